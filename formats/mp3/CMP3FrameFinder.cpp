#include "formats/mp3/CMP3FrameFinder.h"

#include <algorithm>
#include <cstring>

#include "foundation/IStream.h"
#include "foundation/TCast.h"

namespace tbx {

namespace {

// Bit rates in kBit/s by index 1 to 14; index 0 is the free format, 15 is
// forbidden.
constexpr std::int32_t kBitRates[5][15] = {
    {0, 32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448},  // MPEG 1, layer I
    {0, 32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384},     // MPEG 1, layer II
    {0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320},      // MPEG 1, layer III
    {0, 32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256},     // MPEG 2 and 2.5, layer I
    {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160},          // MPEG 2 and 2.5, layers II and III
};

constexpr std::int32_t kMPEG1SampleRates[3] = {44100, 48000, 32000};

}  // namespace

bool CMP3FrameHeader::parse(std::uint32_t header, CMP3FrameHeader& result)
{
    if ((header & 0xFFE00000u) != 0xFFE00000u) return false;
    const std::uint32_t versionBits = (header >> 19) & 3;
    const std::uint32_t layerBits = (header >> 17) & 3;
    const std::uint32_t bitRateIndex = (header >> 12) & 15;
    const std::uint32_t sampleRateIndex = (header >> 10) & 3;
    if (versionBits == 1 || layerBits == 0 || bitRateIndex == 15 || sampleRateIndex == 3) return false;

    CMP3FrameHeader parsed;
    parsed.version = static_cast<Version>(versionBits);
    parsed.layer = static_cast<std::int32_t>(4 - layerBits);
    parsed.protectedByCRC = ((header >> 16) & 1) == 0;
    const bool mpeg1 = parsed.version == Version::mpeg1;
    const std::int32_t table = mpeg1 ? parsed.layer - 1 : (parsed.layer == 1 ? 3 : 4);
    parsed.bitRate = kBitRates[table][bitRateIndex] * 1000;
    parsed.sampleRate = kMPEG1SampleRates[sampleRateIndex] >> (mpeg1 ? 0 : (parsed.version == Version::mpeg2 ? 1 : 2));
    parsed.padding = ((header >> 9) & 1) != 0;
    parsed.channelMode = static_cast<ChannelMode>((header >> 6) & 3);
    parsed.modeExtension = static_cast<std::int32_t>((header >> 4) & 3);
    parsed.channels = parsed.channelMode == ChannelMode::mono ? 1 : 2;

    const std::int32_t padding = parsed.padding ? 1 : 0;
    if (parsed.layer == 1) {
        parsed.samplesPerFrame = 384;
        parsed.frameLength = (12 * parsed.bitRate / parsed.sampleRate + padding) * 4;
    } else {
        // Layer III of MPEG 2 and 2.5 has half the samples, so half the bytes.
        parsed.samplesPerFrame = (parsed.layer == 3 && !mpeg1) ? 576 : 1152;
        parsed.frameLength = parsed.samplesPerFrame / 8 * parsed.bitRate / parsed.sampleRate + padding;
    }
    if (parsed.bitRate == 0) parsed.frameLength = 0;
    result = parsed;
    return true;
}

CMP3FrameFinder::CMP3FrameFinder()
{
    reset();
}

void CMP3FrameFinder::setFramesToMatch(std::int32_t frames)
{
    m_framesToMatch = std::max(1, frames);
}

bool CMP3FrameFinder::isUsableFrame(const CMP3FrameHeader& header)
{
    return header.bitRate != 0 && header.frameLength > 3 && header.frameLength + 4 <= kFrameBufferSize;
}

void CMP3FrameFinder::reset()
{
    m_frameFill = 0;
    m_primary = Input{m_primaryBytes.data(), kPrimaryBufferSize};
    m_secondary = Input{m_secondaryBytes.data(), kSecondaryBufferSize};
    m_readingSecondary = false;
    m_streamPosition = -1;
    m_state = State::searching;
    m_lock = CMP3FrameHeader();
    m_lockPosition = -1;
    m_frameHeader = CMP3FrameHeader();
    m_framePosition = -1;
    m_lost = false;
}

std::int32_t CMP3FrameFinder::fill(fenn::IInStream& stream)
{
    if (m_lost) return 0;
    if (m_streamPosition < 0) {
        auto* resetable = fenn::TCast<fenn::IResetableStream>(&stream);
        m_streamPosition = resetable ? resetable->getPos() : 0;
    }
    Input* target = &m_primary;
    if (m_state == State::searching) {
        if (m_primary.fill == 0) m_primary.filePosition = m_streamPosition;
    } else {
        // Behind the lock only the small buffer is refilled; what is still
        // unread in it moves to its front first.
        target = &m_secondary;
        const std::int32_t unread = m_secondary.available();
        if (unread > 0 && m_secondary.offset > 0)
            std::memmove(m_secondary.data, m_secondary.data + m_secondary.offset, static_cast<std::size_t>(unread));
        m_secondary.filePosition = m_streamPosition - unread;
        m_secondary.fill = unread;
        m_secondary.offset = 0;
    }
    const std::int32_t room = std::min(kFillSize, target->capacity - target->fill);
    if (room <= 0) return 0;
    const std::int32_t got = stream.readSome(target->data + target->fill, room);
    target->fill += got;
    m_streamPosition += got;
    return got;
}

bool CMP3FrameFinder::findFrame()
{
    if (m_lost) return false;
    if (m_state == State::frameReady) {
        m_frameFill = 0;
        m_state = State::sync;
    }
    if (m_state == State::searching && !tryLock()) return false;
    for (;;) {
        Input* input = currentInput();
        if (input == nullptr) return false;
        if (runLockedStates(*input)) return true;
    }
}

CMP3FrameFinder::Input* CMP3FrameFinder::currentInput()
{
    if (!m_readingSecondary) {
        if (m_primary.available() > 0) return &m_primary;
        m_readingSecondary = true;
    }
    return m_secondary.available() > 0 ? &m_secondary : nullptr;
}

bool CMP3FrameFinder::matchesLock(const CMP3FrameHeader& header) const
{
    return header.version == m_lock.version && header.layer == m_lock.layer && header.sampleRate == m_lock.sampleRate &&
           header.channels == m_lock.channels && (m_channelModeMayVary || header.channelMode == m_lock.channelMode);
}

CMP3FrameFinder::Chain CMP3FrameFinder::checkChain(std::int32_t offset, const CMP3FrameHeader& head) const
{
    std::int32_t next = offset + head.frameLength;
    for (std::int32_t matched = 0; matched < m_framesToMatch; ++matched) {
        if (next + 4 > m_primary.fill) return Chain::needMoreBytes;
        const std::uint8_t* bytes = m_primary.data + next;
        CMP3FrameHeader header;
        if (!CMP3FrameHeader::isSync(bytes) || !CMP3FrameHeader::parse(CMP3FrameHeader::read(bytes), header) ||
            !isUsableFrame(header))
            return Chain::broken;
        if (header.version != head.version || header.layer != head.layer || header.sampleRate != head.sampleRate ||
            header.channels != head.channels || (!m_channelModeMayVary && header.channelMode != head.channelMode))
            return Chain::broken;
        next += header.frameLength;
    }
    return Chain::locked;
}

bool CMP3FrameFinder::tryLock()
{
    // The scan position is the read offset of the primary buffer: it stops
    // at a candidate whose chain reaches beyond the bytes held, and goes on
    // from there after the next fill.
    std::int32_t& scan = m_primary.offset;
    while (scan + 4 <= m_primary.fill) {
        const std::uint8_t* bytes = m_primary.data + scan;
        CMP3FrameHeader header;
        if (CMP3FrameHeader::isSync(bytes) && CMP3FrameHeader::parse(CMP3FrameHeader::read(bytes), header) &&
            isUsableFrame(header)) {
            const Chain chain = checkChain(scan, header);
            if (chain == Chain::locked) {
                m_lock = header;
                m_lockPosition = m_primary.filePosition + scan;
                m_state = State::sync;
                m_frameFill = 0;
                return true;
            }
            if (chain == Chain::needMoreBytes) break;
        }
        ++scan;
    }
    if (m_primary.fill == kPrimaryBufferSize) m_lost = true;
    return false;
}

bool CMP3FrameFinder::runLockedStates(Input& input)
{
    while (input.available() > 0) {
        switch (m_state) {
        case State::sync: {
            // The first two places of the frame buffer hold the bytes seen
            // until they are 0xFF and a byte with its top three bits set.
            const std::uint8_t byte = input.data[input.offset++];
            if (m_frameFill == 1 && (byte & 0xE0) == 0xE0) {
                m_frame[1] = byte;
                m_frameFill = 2;
                m_state = State::header;
            } else if (byte == 0xFF) {
                m_frame[0] = byte;
                m_frameFill = 1;
                m_framePosition = input.filePosition + input.offset - 1;
            } else {
                m_frameFill = 0;
            }
            break;
        }
        case State::header:
            m_frame[static_cast<std::size_t>(m_frameFill++)] = input.data[input.offset++];
            if (m_frameFill == 4) checkHeader();
            break;
        case State::body: {
            const std::int32_t count = std::min(m_frameHeader.frameLength - m_frameFill, input.available());
            std::memcpy(m_frame.data() + m_frameFill, input.data + input.offset, static_cast<std::size_t>(count));
            m_frameFill += count;
            input.offset += count;
            break;
        }
        case State::searching:
        case State::checkHeader:
        case State::frameReady:
            return false;
        }
        if (m_state == State::body && m_frameFill == m_frameHeader.frameLength) {
            m_state = State::frameReady;
            return true;
        }
    }
    return false;
}

void CMP3FrameFinder::checkHeader()
{
    m_state = State::checkHeader;
    CMP3FrameHeader header;
    if (CMP3FrameHeader::parse(CMP3FrameHeader::read(m_frame.data()), header) && isUsableFrame(header) &&
        matchesLock(header)) {
        m_frameHeader = header;
        m_state = State::body;
    } else {
        resyncAfterBadHeader();
    }
}

void CMP3FrameFinder::resyncAfterBadHeader()
{
    // The search resumes behind the first byte of the bad header: a real sync
    // may begin inside it (0xFF 0xFF 0xFB ...).
    for (std::int32_t start = 1; start < 4; ++start) {
        if (m_frame[static_cast<std::size_t>(start)] != 0xFF) continue;
        if (start < 3 && (m_frame[static_cast<std::size_t>(start) + 1] & 0xE0) != 0xE0) continue;
        const std::int32_t kept = 4 - start;
        std::memmove(m_frame.data(), m_frame.data() + start, static_cast<std::size_t>(kept));
        m_frameFill = kept;
        m_framePosition += start;
        m_state = kept >= 2 ? State::header : State::sync;
        return;
    }
    m_frameFill = 0;
    m_state = State::sync;
}

}  // namespace tbx
