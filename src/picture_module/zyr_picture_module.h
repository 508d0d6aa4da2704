/// The entry point of the picture module, which a host finds by its plain name in zyr_picture.so.
#pragma once

#include "zyr_common/application/zyr_application_data.h"

extern "C" {

/// Stores the picture module's initializer in the application data; ApplicationData::pictureInitialize then brings the
/// module up: it fills the table of pixel conversions and registers the classes of frames, pictures and codecs by name
/// and by GUID. Does nothing without application data. The module must stay loaded until the application data has been
/// destroyed.
ZYR_API void zyr_picture_prepare(zyr::ApplicationData* p_applicationData);
}
