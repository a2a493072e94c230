#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "audio/IAudioChunk.h"

namespace tbx {

// Fills chunk from the decoded blocks of a source whose decoder keeps the
// current block as 16-bit interleaved samples (block, blockFrames,
// blockOffset, blockRate, blockChannels); decodeNext decodes the next block
// and gives false at the end. A chunk holds one format only: a block of
// another rate or channel count waits for the next call. Returns false
// when nothing was left to read.
template <class Decoder, class DecodeNext>
bool readDecodedBlocks(IAudioChunk& chunk, Decoder& decoder, std::int32_t framesPerRead, DecodeNext&& decodeNext)
{
    std::int32_t filled = 0;
    bool formatSet = false;
    while (filled < framesPerRead) {
        if (decoder.blockOffset >= decoder.blockFrames && !decodeNext()) break;
        if (!formatSet) {
            chunk.SetSampleRate(decoder.blockRate);
            chunk.SetChannels(decoder.blockChannels);
            chunk.Reserve(framesPerRead, false);
            formatSet = true;
        } else if (!chunk.HasFormat(decoder.blockRate, decoder.blockChannels)) {
            break;
        }
        const std::int32_t frames = std::min(framesPerRead - filled, decoder.blockFrames - decoder.blockOffset);
        const std::int32_t channels = decoder.blockChannels;
        std::copy_n(decoder.block.data() + static_cast<std::size_t>(decoder.blockOffset) * channels,
                    static_cast<std::size_t>(frames) * channels,
                    chunk.GetWritableData() + static_cast<std::size_t>(filled) * channels);
        filled += frames;
        decoder.blockOffset += frames;
    }
    chunk.SetLength(filled);
    return formatSet;
}

}  // namespace tbx
