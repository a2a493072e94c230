#include "audio/processing/CAudioProcessor.h"

#include <thread>

#include "audio/CAudioChunk.h"
#include "audio/processing/ProcessingTexts.h"
#include "formats/CEncodeSettingsManager.h"
#include "foundation/CError.h"
#include "foundation/CFileSystemManager.h"
#include "foundation/CLogManager.h"
#include "foundation/CStreamManager.h"
#include "foundation/IStringLocalizer.h"
#include "foundation/ISystem.h"
#include "foundation/TCast.h"

namespace tbx {

namespace {

using namespace std::chrono_literals;

// One second of CD audio per read: few enough rounds to be cheap, short
// enough that the 50 ms check comes often for every codec.
constexpr std::int32_t kChunkRate = 44100;
constexpr std::int32_t kChunkChannels = 2;
constexpr std::int32_t kChunkFrames = 44100;
// The check for abort and progress, and the wait of a live source that has
// nothing yet.
constexpr auto kCheckInterval = 50ms;
// The share of an item's slice that its analysis pass takes.
constexpr double kAnalysisShare = 0.25;
// "-old", "-old2" ... "-old9999".
constexpr int kBackupNames = 9999;
// A failed item is part of the job's result, which its owner shows; the
// program's log keeps a record at the level of information, so that a
// console that shows warnings does not show it twice.
constexpr const char* kLogCategory = "processing";

fenn::P<fenn::CFileSystemManager> fileSystem()
{
    return fenn::CFileSystemManager::getInstance();
}

// Calls a member of every filter, in order.
template <class Call> void forEachFilter(const std::vector<fenn::P<IAudioFilter>>& filters, Call call)
{
    for (const fenn::P<IAudioFilter>& filter : filters) call(*filter);
}

// Ends a filter pass after a failure: every filter still gets its end call,
// and an error from it does not hide the first one.
template <class Call> void endFiltersQuietly(const std::vector<fenn::P<IAudioFilter>>& filters, Call call) noexcept
{
    for (const fenn::P<IAudioFilter>& filter : filters) {
        try {
            call(*filter);
        } catch (...) {
        }
    }
}

// The temporary file of an item that has not reached its target: closes
// what writes into it and deletes it, so that a failed item leaves nothing
// behind in the target folder.
class TemporaryTarget
{
public:
    explicit TemporaryTarget(fenn::CURI uri) : m_uri(std::move(uri)) {}
    ~TemporaryTarget()
    {
        if (m_committed) return;
        try {
            if (m_sink) m_sink->Abort();
        } catch (...) {
        }
        try {
            if (m_stream) m_stream->close();
        } catch (...) {
        }
        try {
            fileSystem()->deleteFile(m_uri);
        } catch (...) {
        }
    }
    TemporaryTarget(const TemporaryTarget&) = delete;
    TemporaryTarget& operator=(const TemporaryTarget&) = delete;

    void setWriters(fenn::P<fenn::ISeekableOutStream> stream, fenn::P<IAudioSink> sink)
    {
        m_stream = std::move(stream);
        m_sink = std::move(sink);
    }
    // The sink has finished: the stream is closed and the file complete.
    void closeWriters()
    {
        m_sink = nullptr;
        m_stream->close();
        m_stream = nullptr;
    }
    void committed() { m_committed = true; }

private:
    fenn::CURI m_uri;
    fenn::P<fenn::ISeekableOutStream> m_stream;
    fenn::P<IAudioSink> m_sink;
    bool m_committed = false;
};

// Closes a source that failed on the way; its own errors are of no
// interest then.
class SourceCloser
{
public:
    explicit SourceCloser(IAudioSource& source) : m_source(source) {}
    ~SourceCloser()
    {
        if (m_closed) return;
        try {
            m_source.Close();
        } catch (...) {
        }
    }
    SourceCloser(const SourceCloser&) = delete;
    SourceCloser& operator=(const SourceCloser&) = delete;

    void close()
    {
        m_closed = true;
        m_source.Close();
    }

private:
    IAudioSource& m_source;
    bool m_closed = false;
};

fenn::String nameFromElement(const fenn::PC<fenn::IBase>& element)
{
    const fenn::P<fenn::IString> text = fenn::TCast<fenn::IString>(element);
    return text ? fenn::String(text) : fenn::String();
}

}  // namespace

CAudioProcessor::CAudioProcessor(const CFileTypeRegistry& fileTypes)
    : m_fileTypes(&fileTypes), m_customSettings(fenn::make<fenn::CValueList>()),
      m_tagOverrides(fenn::make<fenn::CValueList>()),
      m_analysingAction(fenn::localize(processingTexts::processorAnalysing)),
      m_processingAction(fenn::localize(processingTexts::processorProcessing)),
      m_analysingError(fenn::localize(processingTexts::processorErrorAnalysing)),
      m_processingError(fenn::localize(processingTexts::processorErrorProcessing)),
      m_abortedMessage(fenn::localize(processingTexts::processorAborted))
{
}

CAudioProcessor::~CAudioProcessor() = default;

void CAudioProcessor::SetOutputFileType(fenn::P<IOutputFileType> type)
{
    m_outputFileType = std::move(type);
}

void CAudioProcessor::SetFormat(std::int32_t qualitySelector, const fenn::CValueList& customSettings)
{
    m_qualitySelector = qualitySelector;
    m_customSettings = fenn::make<fenn::CValueList>();
    m_customSettings->assign(customSettings);
}

void CAudioProcessor::SetDestination(const CFileDestination& destination, std::int32_t existingFilePolicy)
{
    m_destination = destination;
    m_existingFilePolicy = existingFilePolicy;
}

void CAudioProcessor::SetTagOverrides(const fenn::CValueList& tags)
{
    m_tagOverrides = fenn::make<fenn::CValueList>();
    m_tagOverrides->assign(tags);
}

void CAudioProcessor::SetFilter(fenn::P<IAudioFilter> filter)
{
    m_filters.clear();
    if (filter) m_filters.push_back(std::move(filter));
}

void CAudioProcessor::SetFilters(const std::vector<fenn::P<IAudioFilter>>* filters)
{
    m_filters.clear();
    if (filters == nullptr) return;
    for (const fenn::P<IAudioFilter>& filter : *filters)
        if (filter) m_filters.push_back(filter);
}

void CAudioProcessor::SetProgressAction(const fenn::String& analysing, const fenn::String& processing)
{
    m_analysingAction = analysing;
    m_processingAction = processing;
}

void CAudioProcessor::SetErrorMessage(const fenn::String& analysing, const fenn::String& processing)
{
    m_analysingError = analysing;
    m_processingError = processing;
}

void CAudioProcessor::SetAbortedMessage(const fenn::String& message)
{
    m_abortedMessage = message;
}

void CAudioProcessor::Abort()
{
    m_abort.store(true);
}

bool CAudioProcessor::IsAborted() const
{
    return m_abort.load();
}

void CAudioProcessor::Run()
{
    // A listener or a posted action may let go of the job's last outside
    // reference while it runs.
    const fenn::P<CAudioProcessor> self(this);
    m_itemProgress = 0.0;
    m_totalProgress = 0.0;
    m_baseProgress = 0.0;
    m_itemWeight = 0.0;
    m_analysisWeight = 0.0;
    m_abort.store(false);
    m_abortLogged = false;
    m_completedItems = 0;
    m_log = fenn::String();

    const std::int32_t count = GetItemCount();
    const bool analyse = count > 0 && NeedsAnalysis();
    if (count > 0) {
        const double slice = 1.0 / count;
        m_analysisWeight = analyse ? slice * kAnalysisShare : 0.0;
        m_itemWeight = slice - m_analysisWeight;
    }

    std::int32_t item = 0;
    for (; item < count && !IsAborted(); ++item) {
        bool failed = false;
        if (analyse) {
            SetActionFor(m_analysingAction, item);
            m_itemProgress = 0.0;
            NotifyListeners();
            try {
                AnalyseItem(item);
            } catch (const fenn::CException& error) {
                ReportAnalysisError(item, error);
                failed = true;
            } catch (const std::exception& error) {
                ReportAnalysisError(item, fenn::CError(fenn::String(), fenn::String::copyOf(error.what())));
                failed = true;
            }
            m_baseProgress += m_analysisWeight;
            m_totalProgress = m_baseProgress;
            NotifyListeners();
            YieldToEvents();
        }
        // An item whose analysis failed would be processed without what
        // the filters need to know, so it is left out; an abort during the
        // analysis ends the item as well.
        if (!failed && !IsAborted()) {
            SetActionFor(m_processingAction, item);
            m_itemProgress = 0.0;
            NotifyListeners();
            try {
                ProcessItem(item);
                ++m_completedItems;
            } catch (const fenn::CException& error) {
                ReportProcessingError(item, error);
            } catch (const std::exception& error) {
                ReportProcessingError(item, fenn::CError(fenn::String(), fenn::String::copyOf(error.what())));
            }
        }
        m_baseProgress = static_cast<double>(item + 1) / count;
        m_totalProgress = m_baseProgress;
        NotifyListeners();
        YieldToEvents();
    }
    // Stopped between two items: the log still tells why the rest is missing.
    if (item < count && IsAborted() && !m_abortLogged) AppendToLog(m_abortedMessage);

    m_totalProgress = 1.0;
    m_baseProgress = 1.0;
    m_itemProgress = 0.0;
    NotifyListeners();
}

bool CAudioProcessor::NeedsAnalysis() const
{
    for (const fenn::P<IAudioFilter>& filter : m_filters)
        if (filter->NeedsAnalysis()) return true;
    return false;
}

void CAudioProcessor::AnalyseItem(std::int32_t item)
{
    CAudioChunk chunk(kChunkRate, kChunkChannels, kChunkFrames);
    const fenn::P<IAudioSource> source = CreateSource(item);
    source->Open(static_cast<std::int32_t>(AudioPurpose::analysis), nullptr);
    const bool wait = source->IsLive();

    Clock::time_point lastReport = Clock::now();
    m_itemProgress = 0.0;
    NotifyListeners();

    forEachFilter(m_filters, [](IAudioFilter& filter) { filter.StartAnalysis(); });
    try {
        while (source->Read(chunk)) {
            if (chunk.GetLength() == 0) {
                if (wait) std::this_thread::sleep_for(kCheckInterval);
            } else {
                forEachFilter(m_filters, [&chunk](IAudioFilter& filter) { filter.Analyse(chunk); });
            }
            CheckPoint(lastReport, *source, m_analysisWeight);
        }
    } catch (...) {
        endFiltersQuietly(m_filters, [](IAudioFilter& filter) { filter.EndAnalysis(); });
        throw;
    }
    forEachFilter(m_filters, [](IAudioFilter& filter) { filter.EndAnalysis(); });

    m_itemProgress = 1.0;
    m_totalProgress = m_analysisWeight + m_baseProgress;
    NotifyListeners();
}

void CAudioProcessor::ProcessItem(std::int32_t item)
{
    const fenn::P<IAudioSource> source = CreateSource(item);
    SourceCloser sourceCloser(*source);
    source->Open(static_cast<std::int32_t>(m_openPurpose), nullptr);

    const fenn::P<IOutputFileType> type = GetOutputFileType(item);
    auto quality = fenn::make<fenn::CValueList>();
    fenn::P<fenn::CValueList> info = source->GetInfo();
    if (!info) info = fenn::make<fenn::CValueList>();
    CEncodeSettingsManager::getEncodeSettings(*quality, *type, m_qualitySelector, *m_customSettings,
                                              source->GetTypeName(), *info);

    const fenn::CURI temporary = CreateTemporaryTarget(item);
    TemporaryTarget temporaryTarget(temporary);

    // The overrides win: a source's tag fills only what they leave open.
    auto tags = fenn::make<fenn::CValueList>();
    tags->assign(*m_tagOverrides);
    if (const fenn::P<fenn::CValueList> sourceTags = source->GetTags()) {
        const fenn::P<fenn::IConstEnum> names = sourceTags->getNames();
        while (names->hasMoreElements()) {
            fenn::PC<fenn::IBase> element;
            names->next(element);
            const fenn::String name = nameFromElement(element);
            if (tags->hasValue(name)) continue;
            if (const fenn::P<fenn::IBase> value = sourceTags->getValue(name)) tags->setValue(name, value);
        }
    }

    const fenn::P<fenn::ISeekableOutStream> stream = fenn::CStreamManager::getInstance()->openSeekableOutStream(
        temporary, fenn::StreamShare::exclusive, fenn::StreamCreate::createEmpty, fenn::DeleteOnClose::no);
    temporaryTarget.setWriters(stream, nullptr);
    const fenn::P<IAudioSink> sink = type->createAudioSink(stream, *quality, *tags);
    temporaryTarget.setWriters(stream, sink);

    Pump(*sink, *source);
    sink->Finish();
    temporaryTarget.closeWriters();
    sourceCloser.close();

    CommitTarget(item, temporary, *tags);
    temporaryTarget.committed();
}

void CAudioProcessor::Pump(IAudioSink& sink, IAudioSource& source)
{
    CAudioChunk chunk(kChunkRate, kChunkChannels, kChunkFrames);
    Clock::time_point lastReport = Clock::now();
    m_itemProgress = 0.0;
    NotifyListeners();
    forEachFilter(m_filters, [](IAudioFilter& filter) { filter.StartProcessing(); });
    const bool wait = source.IsLive();
    try {
        while (source.Read(chunk)) {
            if (chunk.GetLength() == 0) {
                if (wait) std::this_thread::sleep_for(kCheckInterval);
            } else {
                forEachFilter(m_filters, [&chunk](IAudioFilter& filter) { filter.Process(chunk); });
                sink.Write(chunk);
            }
            CheckPoint(lastReport, source, m_itemWeight);
        }
    } catch (...) {
        endFiltersQuietly(m_filters, [](IAudioFilter& filter) { filter.EndProcessing(); });
        throw;
    }
    forEachFilter(m_filters, [](IAudioFilter& filter) { filter.EndProcessing(); });

    m_itemProgress = 1.0;
    m_totalProgress = m_itemWeight + m_baseProgress;
    NotifyListeners();
}

void CAudioProcessor::CheckPoint(Clock::time_point& lastReport, const IAudioSource& source, double weight)
{
    const Clock::time_point now = Clock::now();
    if (now - lastReport < kCheckInterval) return;
    if (IsAborted()) {
        m_abortLogged = true;
        throw fenn::CError(fenn::String(), m_abortedMessage);
    }
    m_itemProgress = source.GetProgress();
    m_totalProgress = m_itemProgress * weight + m_baseProgress;
    NotifyListeners();
    YieldToEvents();
    lastReport = now;
}

fenn::CURI CAudioProcessor::CreateTemporaryTarget(std::int32_t item)
{
    const fenn::CURI folder = GetTargetFolder(item);
    fileSystem()->createFolder(folder);
    return fileSystem()->createTemporaryFile(folder, fenn::String(), ".tmp");
}

void CAudioProcessor::CommitTarget(std::int32_t item, const fenn::CURI& temporary, const fenn::CValueList& /*tags*/)
{
    const fenn::CURI target = GetTargetURI(item);
    HandleExistingTarget(target);
    fileSystem()->moveFile(temporary, target, fenn::ExistingTarget::replace);
}

void CAudioProcessor::HandleExistingTarget(const fenn::CURI& target)
{
    if (!fileSystem()->getFileObject(target)) return;
    if (m_existingFilePolicy == existingFilePolicy::moveToTrash) {
        fileSystem()->moveToTrash(target);
        return;
    }
    if (m_existingFilePolicy != existingFilePolicy::rename) return;

    // The name splits at its last dot, which stays with the extension; a
    // name without a dot gets "-old" at its end.
    const fenn::String name = target.getFileName();
    const fenn::CStringPos dot = name.findLast(".");
    const fenn::String stem = dot.isEnd() ? name : name.left(dot.index);
    const fenn::String extension = dot.isEnd() ? fenn::String() : name.substring(dot.index);
    const fenn::CURI folder = target.getParent();
    for (int k = 1; k <= kBackupNames; ++k) {
        const fenn::String number = k == 1 ? fenn::String() : fenn::fromInt(k);
        const fenn::CURI backup = folder.append(stem + "-old" + number + extension);
        if (fileSystem()->getFileObject(backup)) continue;
        fileSystem()->moveFile(target, backup, fenn::ExistingTarget::fail);
        return;
    }
    throw fenn::CError(fenn::String(), fenn::localize(processingTexts::errorRenamingExistingFile));
}

fenn::P<IOutputFileType> CAudioProcessor::FindOutputFileType(const fenn::CURI& file) const
{
    if (m_outputFileType) return m_outputFileType;
    const fenn::String extension = CFileTypeRegistry::getExtension(file);
    if (!extension.isEmpty() && m_fileTypes->findInputFileTypeByExtension(extension)) {
        if (fenn::P<IOutputFileType> type = m_fileTypes->findOutputFileTypeByExtension(extension)) return type;
    }
    throw fenn::CError(fenn::String(), fenn::localize(processingTexts::cannotWriteFileFormat));
}

void CAudioProcessor::ReportProcessingError(std::int32_t item, const fenn::CException& error)
{
    const fenn::String message = error.getDescription();
    AppendToLog(m_processingError.replace("%ITEM%", GetItemName(item)).replace("%MSG%", message));
    fenn::CLogManager::getInstance()->info(
        kLogCategory, fenn::String("Exception during 'audioprocessor: processing error': ") + message);
}

void CAudioProcessor::ReportAnalysisError(std::int32_t item, const fenn::CException& error)
{
    const fenn::String message = error.getDescription();
    AppendToLog(m_analysingError.replace("%ITEM%", GetItemName(item)).replace("%MSG%", message));
    fenn::CLogManager::getInstance()->info(
        kLogCategory, fenn::String("Exception during 'audioprocessor: analysis error': ") + message);
}

void CAudioProcessor::YieldToEvents()
{
    if (const fenn::P<fenn::ISystem> system = fenn::getSystem()) system->pump();
}

void CAudioProcessor::NotifyListeners()
{
    m_listeners.notify([this](IProgressListener& listener) { listener.onProgress(this); });
}

void CAudioProcessor::SetActionFor(const fenn::String& text, std::int32_t item)
{
    m_action = text.replace("%ITEM%", GetItemName(item));
}

void CAudioProcessor::AppendToLog(const fenn::String& line)
{
    m_log += line + "\n";
}

}  // namespace tbx
