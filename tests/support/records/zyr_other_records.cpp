#include "picture/zyr_frame_codec_info.h"
#include "picture/zyr_frame_codec_proposal.h"
#include "picture/zyr_frame_codec_request.h"
#include "support/records/zyr_record_list.h"
#include "zyr_common/geometry/zyr_path2d_command.h"
#include "zyr_common/references/zyr_object_references.h"
#include "zyr_common/references/zyr_resource_id.h"
#include "zyr_common/storage/zyr_file_format_header.h"
#include "zyr_common/variable/zyr_variable_descriptor.h"

namespace zyr::test {

namespace {

template <class... R> void describe(std::vector<RecordKind>& p_kinds) {
    (p_kinds.push_back(describeRecord<R>()), ...);
}

template <template <typename> class... Templates> void describeTwins(std::vector<RecordKind>& p_kinds) {
    describe<Templates<float>..., Templates<double>...>(p_kinds);
}

} // namespace

std::vector<RecordKind> describeOtherRecords() {
    std::vector<RecordKind> kinds;
    describe<ObjectNameReference, ObjectGUIDReference, ObjectInputGUIDReference>(kinds);
    describe<RankGUIDPair, GUIDDigestPair, ResourceID, NamedResourceID>(kinds);
    describe<FileFormatHeader, XmlFormatHeader, VariableDescriptor>(kinds);
    describe<FrameCodecRequest, FrameCodecProposal, FrameCodecInfo>(kinds);
    describeTwins<Path2DCommand, MoveToPath2DCommand, LineToPath2DCommand, CurveToPath2DCommand>(kinds);
    describeTwins<SmoothPath2DCommand, QuadCurveToPath2DCommand, QuadSmoothPath2DCommand>(kinds);
    describeTwins<ArcPath2DCommand, ClosePath2DCommand>(kinds);
    return kinds;
}

} // namespace zyr::test
