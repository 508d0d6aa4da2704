/// Everything public of the picture and codec model.
#pragma once

#include "picture/zyr_codec_enums.h"
#include "picture/zyr_diffmap.h"
#include "picture/zyr_frame_codec_info.h"
#include "picture/zyr_frame_codec_proposal.h"
#include "picture/zyr_frame_codec_request.h"
#include "picture/zyr_frame_data.h"
#include "picture/zyr_frame_decoder.h"
#include "picture/zyr_frame_encoder.h"
#include "picture/zyr_image.h"
#include "picture/zyr_jpeg_format_info.h"
#include "picture/zyr_palette.h"
#include "picture/zyr_shared_texture.h"
