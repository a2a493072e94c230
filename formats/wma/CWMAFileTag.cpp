#include "formats/wma/CWMAFileTag.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/dict.h>
}

#include <initializer_list>
#include <new>
#include <string>
#include <vector>

#include "formats/ffmpeg/FFmpegIO.h"
#include "formats/ffmpeg/FFmpegLibrary.h"
#include "formats/wma/ASFAttributes.h"
#include "formats/wma/WMATexts.h"
#include "foundation/CFileSystemManager.h"
#include "foundation/CLogManager.h"
#include "foundation/CStreamManager.h"
#include "foundation/CURIError.h"
#include "foundation/IStream.h"
#include "foundation/IStringLocalizer.h"

namespace tbx {

namespace {

constexpr const char* kSaveLogName = "CWMAFileTag: saveChanges";

// Where each field is written, and the names under which libavformat's
// demuxer may hand it out: the common name, or the attribute's own. A save
// removes all of them before it writes the attribute.
struct FieldNames
{
    const char* attribute;
    std::initializer_list<const char*> read;
};
// In the order of CWMAFileTag::Field.
const FieldNames kFieldNames[] = {
    {asfAttributes::title, {"title"}},
    {asfAttributes::author, {"artist", "author"}},
    {asfAttributes::albumTitle, {"album"}},
    {asfAttributes::trackNumber, {"track", asfAttributes::trackNumber}},
    {asfAttributes::year, {asfAttributes::year, "date", "year"}},
    {asfAttributes::genre, {"genre"}},
    {asfAttributes::description, {"comment", "description"}},
};

// Owns a dictionary of FFmpeg's.
struct Dictionary
{
    Dictionary() = default;
    Dictionary(const Dictionary&) = delete;
    Dictionary& operator=(const Dictionary&) = delete;
    ~Dictionary() { ffmpeg().av_dict_free(&entries); }

    void set(const char* name, const char* value)
    {
        if (ffmpeg().av_dict_set(&entries, name, value, 0) < 0) throw std::bad_alloc();
    }

    AVDictionary* entries = nullptr;
};

// Owns a packet of FFmpeg's.
struct Packet
{
    Packet() : packet(ffmpeg().av_packet_alloc())
    {
        if (packet == nullptr) throw std::bad_alloc();
    }
    Packet(const Packet&) = delete;
    Packet& operator=(const Packet&) = delete;
    ~Packet() { ffmpeg().av_packet_free(&packet); }

    AVPacket* packet;
};

[[noreturn]] void throwSaveError(const fenn::CURI& file)
{
    throw fenn::CError(fenn::String(), fenn::localize(wmaTexts::tagSaveFailed).replace("%URI%", file.getRawURI()));
}

}  // namespace

CWMAFileTag::CWMAFileTag(fenn::CURI file) : m_file(std::move(file))
{
    const CFFmpegDemuxer demuxer(m_file, "asf");
    for (std::size_t field = 0; field < kFieldCount; ++field)
        m_fields[field] = ffmpegMetadataText(demuxer.get()->metadata, kFieldNames[field].read);
}

void CWMAFileTag::setField(Field field, const fenn::String& text)
{
    m_fields[static_cast<std::size_t>(field)] = text;
    m_dirty = true;
}

void CWMAFileTag::saveChanges()
{
    if (!m_dirty) return;
    fenn::CFileSystemManager::getInstance()->replaceThroughTemporaryFile(
        m_file, [this](const fenn::CURI& temporary) { writeTemporaryFile(temporary); }, kSaveLogName);
    m_dirty = false;
}

void CWMAFileTag::writeTemporaryFile(const fenn::CURI& temporary)
{
    const CFFmpegDemuxer input(m_file, "asf");
    AVFormatContext* source = input.get();

    // The attributes as they are, with the fields in their place. The
    // muxer drops "encoder", so the file's encoder goes in under the
    // attribute that FFmpeg reads it from.
    Dictionary attributes;
    if (ffmpeg().av_dict_copy(&attributes.entries, source->metadata, 0) < 0) throw std::bad_alloc();
    const fenn::String encoder = ffmpegMetadataText(source->metadata, {"encoder"});
    attributes.set("encoder", nullptr);
    if (!encoder.isEmpty()) attributes.set(asfAttributes::encodingSettings, encoder.toStdString().c_str());
    for (std::size_t field = 0; field < kFieldCount; ++field) {
        for (const char* name : kFieldNames[field].read) attributes.set(name, nullptr);
        attributes.set(kFieldNames[field].attribute, nullptr);
        const std::string text = m_fields[field].trim().toStdString();
        if (!text.empty()) attributes.set(kFieldNames[field].attribute, text.c_str());
    }

    const fenn::P<fenn::ISeekableOutStream> target = fenn::CStreamManager::getInstance()->openSeekableOutStream(
        temporary, fenn::StreamShare::exclusive, fenn::StreamCreate::createEmpty, fenn::DeleteOnClose::no);
    try {
        CFFmpegMuxer output(target, "asf");
        AVFormatContext* copy = output.get();
        // Audio streams only: the muxer has no way to write a cover picture.
        std::vector<int> streamMap(source->nb_streams, -1);
        for (unsigned index = 0; index < source->nb_streams; ++index) {
            const AVStream* stream = source->streams[index];
            if (stream->codecpar->codec_type != AVMEDIA_TYPE_AUDIO) continue;
            AVStream* copied = ffmpeg().avformat_new_stream(copy, nullptr);
            if (copied == nullptr || ffmpeg().avcodec_parameters_copy(copied->codecpar, stream->codecpar) < 0) {
                throw std::bad_alloc();
            }
            copied->time_base = stream->time_base;
            streamMap[index] = copied->index;
        }
        if (copy->nb_streams == 0) throw fenn::CFileFormatNotSupportedError(m_file);
        copy->metadata = attributes.entries;
        attributes.entries = nullptr;

        if (ffmpeg().avformat_write_header(copy, nullptr) < 0) {
            output.rethrowStreamError();
            throwSaveError(m_file);
        }
        const Packet holder;
        AVPacket* packet = holder.packet;
        int result = 0;
        while ((result = ffmpeg().av_read_frame(source, packet)) >= 0) {
            const int index = packet->stream_index;
            if (index < 0 || static_cast<unsigned>(index) >= source->nb_streams || streamMap[index] < 0) {
                ffmpeg().av_packet_unref(packet);
                continue;
            }
            ffmpeg().av_packet_rescale_ts(packet, source->streams[index]->time_base,
                                          copy->streams[streamMap[index]]->time_base);
            packet->stream_index = streamMap[index];
            packet->pos = -1;
            // Takes the packet's data and leaves the packet blank.
            if (ffmpeg().av_interleaved_write_frame(copy, packet) < 0) {
                output.rethrowStreamError();
                throwSaveError(m_file);
            }
        }
        if (result != AVERROR_EOF) {
            input.rethrowStreamError();
            throwSaveError(m_file);
        }
        if (ffmpeg().av_write_trailer(copy) < 0 || !output.finish()) {
            output.rethrowStreamError();
            throwSaveError(m_file);
        }
        target->flush();
        target->close();
    } catch (...) {
        try {
            target->close();
        } catch (const fenn::CException& error) {
            fenn::CLogManager::getInstance()->error(kSaveLogName, error.getDescription());
        }
        throw;
    }
}

}  // namespace tbx
