// The streams without anything behind them.
#include "core_module/streams/zyr_stream_levels.h"
#include "core_module/zyr_core_class.h"

namespace zyr {

using InputStream = Implementation<InputStreamLevel<IInputStream>>;
using OutputStream = Implementation<OutputStreamLevel<IOutputStream>>;
using IOStream = Implementation<IOStreamLevel<IIOStream>>;

ZYR_DEFINE_CORE_CLASS(InputStream)
ZYR_DEFINE_CORE_CLASS(OutputStream)
ZYR_DEFINE_CORE_CLASS(IOStream)

} // namespace zyr
