#include "zyr_common/geometry/zyr_path2d_command.h"

#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

template <class Command, typename T>
static bool isSame(const Path2DCommand<T>& p_left, const Path2DCommand<T>& p_right) {
    return static_cast<const Command&>(p_left) == static_cast<const Command&>(p_right);
}

template <typename T> bool zyr_isSameCommand(const Path2DCommand<T>& p_left, const Path2DCommand<T>& p_right) {
    if (p_left.getID() != p_right.getID()) {
        return false;
    }
    switch (p_left.getID()) {
    case 1:
        return isSame<MoveToPath2DCommand<T>>(p_left, p_right);
    case 2:
        return isSame<LineToPath2DCommand<T>>(p_left, p_right);
    case 3:
        return isSame<CurveToPath2DCommand<T>>(p_left, p_right);
    case 4:
        return isSame<SmoothPath2DCommand<T>>(p_left, p_right);
    case 5:
        return isSame<QuadCurveToPath2DCommand<T>>(p_left, p_right);
    case 6:
        return isSame<QuadSmoothPath2DCommand<T>>(p_left, p_right);
    case 7:
        return isSame<ArcPath2DCommand<T>>(p_left, p_right);
    default:
        return p_left.getClassName() == p_right.getClassName();
    }
}

#define ZYR_INSTANTIATE_COMMAND(command)                                                                               \
    template class RecordWalker<command<float>>;                                                                       \
    template class RecordWalker<command<double>>;

ZYR_INSTANTIATE_COMMAND(Path2DCommand)
ZYR_INSTANTIATE_COMMAND(MoveToPath2DCommand)
ZYR_INSTANTIATE_COMMAND(LineToPath2DCommand)
ZYR_INSTANTIATE_COMMAND(CurveToPath2DCommand)
ZYR_INSTANTIATE_COMMAND(SmoothPath2DCommand)
ZYR_INSTANTIATE_COMMAND(QuadCurveToPath2DCommand)
ZYR_INSTANTIATE_COMMAND(QuadSmoothPath2DCommand)
ZYR_INSTANTIATE_COMMAND(ArcPath2DCommand)
ZYR_INSTANTIATE_COMMAND(ClosePath2DCommand)

template bool zyr_isSameCommand(const Path2DCommand<float>&, const Path2DCommand<float>&);
template bool zyr_isSameCommand(const Path2DCommand<double>&, const Path2DCommand<double>&);

} // namespace zyr
