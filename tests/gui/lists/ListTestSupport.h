#pragma once

#include <vector>

#include "gui/IWindowListener.h"
#include "gui/widgets/CCellViewModel.h"

namespace liststest {

using namespace fenn::gui;

// Keeps what windows tell it.
class Recorder : public fenn::CObject, public virtual IWindowListener
{
public:
    void windowNotified(CWindow& window, const CNotification& notification) override
    {
        events.push_back({&window, notification});
    }
    int count(Notification kind) const
    {
        int n = 0;
        for (const auto& event : events) n += event.second.kind == kind ? 1 : 0;
        return n;
    }
    // The last notification of the kind; kind changed with index -2 if there was none.
    CNotification last(Notification kind) const
    {
        for (auto event = events.rbegin(); event != events.rend(); ++event) {
            if (event->second.kind == kind) return event->second;
        }
        return {Notification::changed, -2, -2};
    }
    std::vector<std::pair<CWindow*, CNotification>> events;
};

// A long list worked out on demand: "Track n", an artist, a length and a
// "Play" button text. Counts the cells it was asked for, so tests can see
// that only what shows is read.
class NumberedModel : public CCellViewModelBase
{
public:
    explicit NumberedModel(int rows) : m_rows(rows) {}

    int getRowCount() const override { return m_rows; }
    fenn::String getCellText(int row, int column) const override
    {
        ++cellsRead;
        switch (column) {
        case 0:
            return fenn::String("Track ") + fenn::fromInt(row);
        case 1:
            return fenn::String("Artist ") + fenn::fromInt(row % 7);
        case 2:
            return fenn::fromInt(row % 5 + 2) + ":" + fenn::fromInt(10 + row % 50);
        default:
            return "Play";
        }
    }
    void setRows(int rows)
    {
        m_rows = rows;
        notifyChanged(0, ICellViewModelListener::kToTheEnd);
    }

    mutable long cellsRead = 0;

private:
    int m_rows;
};

}  // namespace liststest
