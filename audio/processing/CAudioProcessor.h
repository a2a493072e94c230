#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <vector>

#include "audio/IAudioFilter.h"
#include "audio/IAudioSource.h"
#include "audio/IProgress.h"
#include "audio/processing/CFileDestination.h"
#include "formats/CFileTypeRegistry.h"
#include "foundation/CException.h"
#include "foundation/CObject.h"
#include "foundation/CURI.h"
#include "foundation/CValueList.h"
#include "foundation/TFrailArray.h"

namespace tbx {

// The batch job of the audio engine. For each item it opens a source, runs
// an analysis pass through the filters when one of them asks for it, writes
// all audio through the filters into a sink for a new ".tmp" file in the
// target folder, and at the end moves that file to the target's place under
// the exists policy. A failed item is written to the job's log and the job
// goes on with the next one, so a target is only ever replaced by a
// complete file, and an existing file is only renamed or trashed once the
// new one is ready.
//
// Derived classes say what the items are (CFileConverter: files in, files
// out; CAudioSourceProcessor: one generated source, one file). A job is
// configured, run once on the GUI thread, and read afterwards. Run holds the
// thread until the job ends and keeps the GUI alive from its yield point,
// which at most every 50 ms lets the platform's queue run; Abort comes from
// an event handled there (or from any thread) and ends the job after the
// item at work. Listeners are told on the calling thread, about 20 times a
// second at most during an item.
class CAudioProcessor : public fenn::CObject, public virtual IProgress
{
public:
    ~CAudioProcessor() override;
    CAudioProcessor(const CAudioProcessor&) = delete;
    CAudioProcessor& operator=(const CAudioProcessor&) = delete;

    // The one output type for every item; null (the initial value) lets each
    // item keep the type of its input.
    void SetOutputFileType(fenn::P<IOutputFileType> type);
    // The quality selector (0 keep, 1 to 4 presets, 5 custom) and the custom
    // settings for selector 5. The job completes them for each source.
    void SetFormat(std::int32_t qualitySelector, const fenn::CValueList& customSettings);
    // Initially the source's folder and existingFilePolicy::rename.
    void SetDestination(const CFileDestination& destination, std::int32_t existingFilePolicy);
    // Tag values that win over those of the sources.
    void SetTagOverrides(const fenn::CValueList& tags);
    // The filter chain: one filter, or a list of them in order; a null
    // filter or list leaves the chain empty.
    void SetFilter(fenn::P<IAudioFilter> filter);
    void SetFilters(const std::vector<fenn::P<IAudioFilter>>* filters);
    // Texts with "%ITEM%" for the two passes.
    void SetProgressAction(const fenn::String& analysing, const fenn::String& processing);
    // Log texts with "%ITEM%" and "%MSG%" for failures in the two passes.
    void SetErrorMessage(const fenn::String& analysing, const fenn::String& processing);
    void SetAbortedMessage(const fenn::String& message);

    // Asks the job to stop; the item at work fails with the aborted message
    // at its next progress point. Any thread.
    void Abort();
    bool IsAborted() const;
    // What went wrong, one line for each failed item; empty when all went well.
    fenn::String GetLog() const { return m_log; }
    // Items whose target is in place after the last Run.
    std::int32_t GetCompletedItemCount() const { return m_completedItems; }
    // Runs every item; never throws for an item's failure.
    void Run();

    double getOverallProgress() override { return m_totalProgress; }
    double getItemProgress() override { return m_itemProgress; }
    // A job has one action text ("Converting file 'x.wav'"); both texts
    // give it.
    fenn::String getItemText() override { return m_action; }
    fenn::String getOverallText() override { return m_action; }
    void addProgressListener(IProgressListener* listener) override { m_listeners.addFrail(listener); }
    void removeProgressListener(IProgressListener* listener) override { m_listeners.remove(listener); }

protected:
    // fileTypes finds the output type of an input that keeps its format; it
    // must outlive the job.
    explicit CAudioProcessor(const CFileTypeRegistry& fileTypes);

    // Creates a new, empty ".tmp" file in the item's target folder (made if
    // missing) and returns it.
    virtual fenn::CURI CreateTemporaryTarget(std::int32_t item);
    // Clears the target's place under the exists policy and moves the
    // temporary file there.
    virtual void CommitTarget(std::int32_t item, const fenn::CURI& temporary, const fenn::CValueList& tags);
    virtual std::int32_t GetItemCount() = 0;
    virtual fenn::String GetItemName(std::int32_t item) = 0;
    // A new, unopened source for the item.
    virtual fenn::P<IAudioSource> CreateSource(std::int32_t item) = 0;
    virtual fenn::CURI GetTargetFolder(std::int32_t item) = 0;
    virtual fenn::CURI GetTargetURI(std::int32_t item) = 0;
    virtual fenn::P<IOutputFileType> GetOutputFileType(std::int32_t item) = 0;
    // Add a line to the log, from the error texts with the item's name and
    // the error's description, and write the error to the program's log.
    virtual void ReportProcessingError(std::int32_t item, const fenn::CException& error);
    virtual void ReportAnalysisError(std::int32_t item, const fenn::CException& error);
    // Lets the platform's queue run: GUI events, posted actions.
    virtual void YieldToEvents();

    // The output type of the job, else the one that writes the format of
    // file; throws CError ("The file format is not supported for writing.")
    // when there is none.
    fenn::P<IOutputFileType> FindOutputFileType(const fenn::CURI& file) const;
    // Clears the place of target under the exists policy: renames the file
    // there to the first free "-old" name, or moves it to the trash.
    void HandleExistingTarget(const fenn::CURI& target);

    const CFileTypeRegistry& GetFileTypes() const { return *m_fileTypes; }
    const CFileDestination& GetDestination() const { return m_destination; }
    std::int32_t GetExistingFilePolicy() const { return m_existingFilePolicy; }
    // The first argument of IAudioSource::Open in the processing pass.
    void SetOpenPurpose(AudioPurpose purpose) { m_openPurpose = purpose; }

private:
    using Clock = std::chrono::steady_clock;

    void AnalyseItem(std::int32_t item);
    void ProcessItem(std::int32_t item);
    void Pump(IAudioSink& sink, IAudioSource& source);
    // The 50 ms check of both passes: throws the aborted message when the
    // job is to stop, else reports the source's progress and yields. weight
    // is the pass's share of the whole.
    void CheckPoint(Clock::time_point& lastReport, const IAudioSource& source, double weight);
    void NotifyListeners();
    void SetActionFor(const fenn::String& text, std::int32_t item);
    void AppendToLog(const fenn::String& line);
    bool NeedsAnalysis() const;

    fenn::PC<CFileTypeRegistry> m_fileTypes;
    AudioPurpose m_openPurpose = AudioPurpose::conversion;
    fenn::P<IOutputFileType> m_outputFileType;
    std::int32_t m_qualitySelector = 0;
    fenn::P<fenn::CValueList> m_customSettings;
    CFileDestination m_destination;
    std::int32_t m_existingFilePolicy = existingFilePolicy::rename;
    fenn::P<fenn::CValueList> m_tagOverrides;
    std::vector<fenn::P<IAudioFilter>> m_filters;
    fenn::String m_analysingAction;
    fenn::String m_processingAction;
    fenn::String m_analysingError;
    fenn::String m_processingError;
    fenn::String m_abortedMessage;
    fenn::String m_log;
    std::atomic<bool> m_abort{false};
    // Whether the log already tells of the abort.
    bool m_abortLogged = false;
    std::int32_t m_completedItems = 0;

    double m_itemProgress = 0.0;
    double m_totalProgress = 0.0;
    double m_baseProgress = 0.0;
    double m_itemWeight = 0.0;
    double m_analysisWeight = 0.0;
    fenn::String m_action;
    fenn::TFrailArray<IProgressListener> m_listeners;
};

}  // namespace tbx
