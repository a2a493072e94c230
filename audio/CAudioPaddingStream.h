#pragma once

#include "audio/IAudioSource.h"
#include "foundation/CObject.h"
#include "foundation/P.h"

namespace tbx {

// Puts silence before and after an inner stream: the first frontPadding
// frames of the range [startFrame, endFrame] and the frames from
// endFrame - backPadding on are left untouched, the rest comes from the inner
// stream. Owns the inner stream, which must not be null. Used by one thread
// at a time.
class CAudioPaddingStream : public fenn::CObject, public virtual IAudioStream
{
public:
    CAudioPaddingStream(fenn::P<IAudioStream> inner, std::int64_t startFrame, std::int64_t endFrame,
                        std::int32_t channels, std::int64_t frontPadding, std::int64_t backPadding);

    std::int32_t Read(std::int32_t* buffer, std::int32_t frames) override;

private:
    fenn::P<IAudioStream> m_inner;
    std::int64_t m_startFrame;
    std::int64_t m_endFrame;
    std::int32_t m_channels;
    std::int64_t m_frontPadding;
    std::int64_t m_backPadding;
    std::int64_t m_position;
};

}  // namespace tbx
