#pragma once

#include <vector>

#include "audio/processing/CAudioProcessor.h"
#include "foundation/TSimpleHashTable.h"

namespace tbx {

// Hashes a URI by its decoded path, which URIs that equal each other share.
struct CURIHashTraits
{
    static std::uint32_t hash(const fenn::CURI& uri) { return uri.getPath().hash(); }
};

// The conversion job: a list of input files, each converted into a file of
// the output type (or of its own type) at the place that the destination
// gives. Configure, Run once, then read the log and the targets. GUI
// thread, as its base.
class CFileConverter : public CAudioProcessor
{
public:
    // fileTypes opens the inputs and finds the output types; it must
    // outlive the job.
    explicit CFileConverter(const CFileTypeRegistry& fileTypes);

    // displayName is how the log and the progress name the file; without
    // one, the URI's text.
    void AddInputFile(const fenn::CURI& file, const fenn::String& displayName = fenn::String());
    std::int32_t GetInputFileCount() const { return static_cast<std::int32_t>(m_inputs.size()); }
    // Names the target of an input. Once one target is named, the job uses
    // named targets only: an input without one gets a new file with a unique
    // name ("x.wav", "x (2).wav"...) in the target folder.
    void SetTargetURI(const fenn::CURI& input, const fenn::CURI& target);
    // The target of an input as the job chose it, or the empty URI for an
    // input that has not come that far.
    fenn::CURI GetTargetURIFor(const fenn::CURI& input) const;

protected:
    std::int32_t GetItemCount() override { return GetInputFileCount(); }
    fenn::String GetItemName(std::int32_t item) override;
    fenn::P<IAudioSource> CreateSource(std::int32_t item) override;
    fenn::CURI GetTargetFolder(std::int32_t item) override;
    fenn::CURI GetTargetURI(std::int32_t item) override;
    fenn::P<IOutputFileType> GetOutputFileType(std::int32_t item) override;
    // A target that the job names itself is a new file that nobody had, so
    // the exists policy has nothing to do there.
    void CommitTarget(std::int32_t item, const fenn::CURI& temporary, const fenn::CValueList& tags) override;

private:
    struct Input
    {
        fenn::CURI uri;
        fenn::String displayName;
    };

    const Input& GetInput(std::int32_t item) const;

    std::vector<Input> m_inputs;
    bool m_explicitTargets = false;
    // Input URI to target URI.
    fenn::TSimpleHashTable<fenn::CURI, fenn::CURI, CURIHashTraits> m_targets{0, 0.8, 2.0};
};

}  // namespace tbx
