#pragma once

#include <vector>

#include "audio/IAudioSource.h"
#include "foundation/CObject.h"
#include "foundation/P.h"

namespace tbx {

// The stream of a volume block: the inner stream's samples multiplied by a
// linear factor inside [startFrame, endFrame] and passed unchanged outside.
// The sample walk moves two samples per frame whatever the channel count, so
// a mono stream passes only its even-numbered samples and its position runs
// at half speed; projects were made with this and sound the way they do
// because of it. Holds its block and the inner stream (null: silent). Used by
// one thread at a time.
class CVolumeChangeStream : public fenn::CObject, public virtual IAudioStream
{
public:
    CVolumeChangeStream(fenn::P<IAudioBlock> block, double factor, fenn::P<IAudioStream> inner, std::int64_t startFrame,
                        std::int64_t endFrame, double rate, std::int32_t channels, std::int32_t resampleMode);

    std::int32_t GetResampleMode() const { return m_resampleMode; }
    double GetRate() const { return m_rate; }

    std::int32_t Read(std::int32_t* buffer, std::int32_t frames) override;

private:
    std::int64_t m_startFrame;
    std::int64_t m_endFrame;
    double m_rate;
    std::int32_t m_channels;
    std::int32_t m_resampleMode;
    double m_factor;
    std::int64_t m_position;
    fenn::P<IAudioBlock> m_block;
    fenn::P<IAudioStream> m_inner;
    // The inner stream's frames of one read, kept to avoid an allocation per read.
    std::vector<std::int32_t> m_innerSamples;
};

}  // namespace tbx
