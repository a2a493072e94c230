#include "audio/CSilenceStream.h"

namespace tbx {

std::int32_t CSilenceStream::Read(std::int32_t* /*buffer*/, std::int32_t frames)
{
    return frames;
}

}  // namespace tbx
