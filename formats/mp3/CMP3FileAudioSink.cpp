#include "formats/mp3/CMP3FileAudioSink.h"

#include <lame/lame.h>

#include <algorithm>
#include <cstdarg>

#include "formats/CEncodeSettingsManager.h"
#include "formats/mp3/CMP3PiggyBackData.h"
#include "formats/mp3/MP3Texts.h"
#include "foundation/CLogManager.h"
#include "foundation/CObjectError.h"
#include "foundation/CValueList.h"
#include "foundation/IStream.h"
#include "foundation/IStringLocalizer.h"
#include "foundation/TCast.h"
#include "tags/CID3v2Tag.h"
#include "tags/CMusicGenreList.h"

namespace tbx {

namespace {

// The description of files that bring none; it goes into the file, so it
// is the same in every language.
constexpr const char* kDefaultDescription = "Encoded with Quorrel Tonebench 3.";
constexpr std::int32_t kFirstYear = 1900;
// The rates of MPEG 1, 2 and 2.5. The sink asks LAME for the rate of its
// input, so no other rate can be written.
constexpr std::int32_t kMPEGSampleRates[] = {8000, 11025, 12000, 16000, 22050, 24000, 32000, 44100, 48000};
constexpr std::int32_t kLastYear = 2100;

// LAME's messages go nowhere: failures come back as result codes.
void ignoreMessage(const char*, va_list) {}

[[noreturn]] void throwEncodeError()
{
    throw fenn::CError(fenn::String(), fenn::localize(mp3Texts::encodeError));
}

void logFailure(const char* action, const fenn::CException& error)
{
    fenn::CLogManager::getInstance()->error("formats", fenn::String("Exception during '") + action +
                                                           "': " + error.getDescription());
}

// A value of the list as text without surrounding blanks; empty when absent.
fenn::String textOf(const fenn::CValueList& values, const char* key)
{
    const fenn::P<fenn::IBase> value = values.getValue(key);
    return value ? value->toString().trim() : fenn::String();
}

fenn::P<IMP3PiggyBackData> findPiggyBack(const fenn::CValueList& tags, const fenn::CValueList& settings)
{
    for (const fenn::CValueList* values : {&tags, &settings}) {
        const fenn::P<fenn::IBase> value = values->getValue(kMP3PiggyBackDataKey);
        if (auto* piggyBack = fenn::TCast<IMP3PiggyBackData>(value.get())) return piggyBack;
    }
    return nullptr;
}

// The number of decimal digits at text's start, and their value.
std::int32_t readDigits(const std::u32string& text, std::size_t start, std::size_t end, std::int64_t& value)
{
    value = 0;
    std::int32_t count = 0;
    for (std::size_t i = start; i < end && text[i] >= U'0' && text[i] <= U'9'; ++i, ++count) {
        if (count < 9) value = value * 10 + (text[i] - U'0');
    }
    return count;
}

}  // namespace

CMP3FileAudioSink::CMP3FileAudioSink(const fenn::P<fenn::ISeekableOutStream>& stream, const fenn::CValueList& settings,
                                     const fenn::CValueList& tags, fenn::P<IMusicGenreList> genres)
    : m_stream(stream)
{
    if (!m_stream) throw fenn::CInvalidArgError(this, "CMP3FileAudioSink", "stream");
    m_lame = lame_init();
    if (m_lame == nullptr) throw std::bad_alloc();
    try {
        std::int32_t kbps = -1;
        if (settings.hasValue(settingKeys::bitRate)) {
            kbps = std::min(settings.getInt(settingKeys::bitRate, 0) / 1000, kMaxBitRateKbps);
            lame_set_VBR_mean_bitrate_kbps(m_lame, kbps);
            lame_set_brate(m_lame, kbps);
        }
        lame_set_VBR(m_lame, settings.getBool(settingKeys::vbr, true) ? vbr_abr : vbr_off);
        const std::int32_t sampleRate = settings.getInt(settingKeys::sampleRate, -1);
        if (settings.hasValue(settingKeys::sampleRate) && sampleRate != -1) {
            m_sampleRate = sampleRate;
            lame_set_in_samplerate(m_lame, sampleRate);
            lame_set_out_samplerate(m_lame, sampleRate);
        }
        if (settings.hasValue(settingKeys::channels)) {
            m_channels = settings.getInt(settingKeys::channels, kDefaultChannels);
            lame_set_num_channels(m_lame, m_channels);
        }
        m_piggyBack = findPiggyBack(tags, settings);
        if (!m_piggyBack) {
            auto values = fenn::make<fenn::CValueList>();
            values->assign(settings);
            const fenn::P<fenn::IConstEnum> names = tags.getNames();
            while (names->hasMoreElements()) {
                fenn::PC<fenn::IBase> name;
                names->next(name);
                const fenn::String key = name->toString();
                values->setValue(key, tags.getValue(key));
            }
            m_tag = buildTag(*values, genres ? *genres : *fenn::make<CMusicGenreList>());
        }

        lame_set_errorf(m_lame, &ignoreMessage);
        lame_set_debugf(m_lame, &ignoreMessage);
        lame_set_msgf(m_lame, &ignoreMessage);
        lame_set_bWriteVbrTag(m_lame, 1);
        const bool mpegRate = std::find(std::begin(kMPEGSampleRates), std::end(kMPEGSampleRates), m_sampleRate) !=
                              std::end(kMPEGSampleRates);
        if (!mpegRate || (m_channels != 1 && m_channels != 2) || lame_init_params(m_lame) < 0) {
            throw fenn::CError(fenn::String(),
                               fenn::localize(mp3Texts::encoderSettingsError)
                                   .replace("%RATE%", fenn::fromInt(m_sampleRate))
                                   .replace("%CHANNELS%", fenn::fromInt(m_channels))
                                   .replace("%BITRATE%", kbps < 0 ? fenn::String("-") : fenn::fromInt(kbps)));
        }
        m_output.resize(kOutputBufferSize);
        m_converted = fenn::make<CAudioChunk>(m_sampleRate, m_channels, 0);
        m_converter = fenn::make<CAudioConverter>();
    } catch (...) {
        closeEncoder();
        throw;
    }
}

CMP3FileAudioSink::~CMP3FileAudioSink()
{
    closeEncoder();
}

void CMP3FileAudioSink::closeEncoder()
{
    if (m_lame != nullptr) {
        lame_close(m_lame);
        m_lame = nullptr;
    }
}

void CMP3FileAudioSink::checkOpen() const
{
    if (m_lame == nullptr) throw fenn::CInvalidObjectStateError(this, "the sink is finished");
}

std::int32_t CMP3FileAudioSink::parseYear(const fenn::String& date)
{
    const std::u32string text = date.toUTF32();
    const auto inRange = [](std::int64_t year) { return year >= kFirstYear && year <= kLastYear; };
    if (text.size() > 3) {
        std::int64_t year = 0;
        if (readDigits(text, 0, text.size(), year) == 4 && inRange(year)) return static_cast<std::int32_t>(year);
    }
    if (text.size() >= 4) {
        std::int64_t year = 0;
        if (readDigits(text, text.size() - 4, text.size(), year) == 4 && inRange(year))
            return static_cast<std::int32_t>(year);
    }
    return -1;
}

fenn::P<CID3v2Tag> CMP3FileAudioSink::buildTag(const fenn::CValueList& tags, const IMusicGenreList& genres)
{
    auto tag = fenn::make<CID3v2Tag>();
    const auto setText = [&](ID3FrameId frame, const fenn::String& text) {
        if (!text.isEmpty()) tag->setText(frame, text);
    };
    setText(makeID3FrameId("TALB"), textOf(tags, "album"));
    const fenn::String genreText = textOf(tags, "genre");
    if (!genreText.isEmpty()) {
        const fenn::P<IMusicGenre> genre = genres.findGenre(genreText);
        if (genre) tag->setGenreNumber(genre->getNumber());
    }
    setText(makeID3FrameId("TCOP"), textOf(tags, "copyright"));
    const std::int32_t year = parseYear(textOf(tags, "date"));
    if (year >= 0) setText(makeID3FrameId("TYER"), fenn::fromInt(year));
    setText(makeID3FrameId("TIT2"), textOf(tags, "title"));
    const fenn::String description = textOf(tags, "description");
    setText(makeID3FrameId("TIT3"), description.isEmpty() ? fenn::String(kDefaultDescription) : description);
    const fenn::String performer = textOf(tags, "performer");
    setText(makeID3FrameId("TPE1"), performer.isEmpty() ? textOf(tags, "artist") : performer);
    setText(makeID3FrameId("TPUB"), textOf(tags, "organization"));
    setText(makeID3FrameId("TRCK"), textOf(tags, "tracknumber"));
    setText(makeID3FrameId("TSRC"), textOf(tags, "isrc"));
    return tag;
}

std::int64_t CMP3FileAudioSink::estimateTagBytes(const fenn::CValueList& values)
{
    if (const fenn::P<IMP3PiggyBackData> piggyBack = findPiggyBack(values, values))
        return std::int64_t{piggyBack->getHeadSize()} + piggyBack->getTailSize();
    return buildTag(values, *fenn::make<CMusicGenreList>())->getSize();
}

void CMP3FileAudioSink::writeHead()
{
    if (m_piggyBack) {
        m_piggyBack->writeHead(*m_stream);
    } else if (m_tag) {
        m_tag->write(*m_stream);
    }
    m_audioStart = m_stream->getPos();
    m_headPending = false;
}

void CMP3FileAudioSink::Write(const IAudioChunk& chunk)
{
    checkOpen();
    if (m_headPending) writeHead();
    if (chunk.HasFormat(m_sampleRate, m_channels)) {
        encode(chunk);
    } else {
        m_converted->ConvertFrom(chunk, m_converter.get());
        encode(*m_converted);
    }
}

void CMP3FileAudioSink::encode(const IAudioChunk& chunk)
{
    const std::int16_t* samples = chunk.GetData();
    std::int32_t framesLeft = chunk.GetLength();
    while (framesLeft > 0) {
        const std::int32_t frames = std::min(framesLeft, kMaxFramesPerCall);
        // LAME reads interleaved input as pairs; one channel goes in as the
        // left channel alone.
        auto* pcm = const_cast<std::int16_t*>(samples);
        const int bytes = m_channels == 1
                              ? lame_encode_buffer(m_lame, pcm, pcm, frames, m_output.data(), kOutputBufferSize)
                              : lame_encode_buffer_interleaved(m_lame, pcm, frames, m_output.data(), kOutputBufferSize);
        writeEncoded(bytes);
        samples += frames * m_channels;
        framesLeft -= frames;
    }
}

void CMP3FileAudioSink::writeEncoded(int bytes)
{
    if (bytes < 0) throwEncodeError();
    if (bytes > 0) m_stream->write(m_output.data(), bytes);
}

void CMP3FileAudioSink::Finish()
{
    checkOpen();
    if (m_headPending) writeHead();
    m_converted->ConvertRemainder(*m_converter);
    if (m_converted->GetLength() > 0) encode(*m_converted);
    writeEncoded(lame_encode_flush(m_lame, m_output.data(), kOutputBufferSize));

    // The VBR header goes over the placeholder frame that LAME put first.
    const std::size_t tagBytes = lame_get_lametag_frame(m_lame, m_output.data(), m_output.size());
    if (tagBytes > 0 && tagBytes <= m_output.size()) {
        m_stream->seek(m_audioStart);
        m_stream->write(m_output.data(), static_cast<std::int32_t>(tagBytes));
        m_stream->seekToEnd();
    }
    if (m_piggyBack) {
        m_stream->seekToEnd();
        m_piggyBack->writeTail(*m_stream);
    }
    closeEncoder();
    m_stream->flush();
    m_stream->close();
}

void CMP3FileAudioSink::Abort()
{
    closeEncoder();
    try {
        m_stream->close();
    } catch (const fenn::CException& error) {
        logFailure("CMP3FileAudioSink: close", error);
    }
}

}  // namespace tbx
