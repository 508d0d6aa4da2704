#include "picture/zyr_frame_codec_info.h"
#include "picture/zyr_frame_codec_proposal.h"
#include "picture/zyr_frame_codec_request.h"

#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

template class RecordWalker<FrameCodecRequest>;
template class RecordWalker<FrameCodecProposal>;
template class RecordWalker<FrameCodecInfo>;

} // namespace zyr
