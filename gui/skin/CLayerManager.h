#pragma once

#include <cstdint>
#include <vector>

#include "gui/skin/ILayer.h"

namespace fenn::gui::skin {

// The layers of one window in paint order, and live states for those that
// are in use. Every layer the window's skin may show is added once
// (addLayer); updateLayers then gives live states to the active ones and
// drops the states of the rest, so a window holds states only for what it
// shows. Owned by the window's core part; GUI thread.
class CLayerManager
{
public:
    struct Record
    {
        P<ILayer> layer;
        // Null while the layer is not shown.
        P<ILayerState> state;
        // How often the layer was added.
        int useCount = 0;
    };

    CLayerManager(CWindow& window, P<ITextSource> source);

    // Adds a layer by its order, after those of the same order; a layer
    // already present only counts one use more.
    void addLayer(const P<ILayer>& layer);
    void addLayers(const LayerList& layers);
    // Live states for exactly the active layers: kept where a layer stays
    // active, made (starting at now) where it becomes active, dropped where
    // it does not stay. Active layers that were never added are ignored.
    void updateLayers(const LayerList& active, std::int64_t now);

    // Makes the live states of the layers that show the window property
    // name again (starting at now); true when there were any.
    bool refreshLayers(const String& name, std::int64_t now);

    int getLayerCount() const { return static_cast<int>(m_records.size()); }
    const Record& getRecord(int index) const { return m_records.at(static_cast<std::size_t>(index)); }
    // The live state of record index, or null.
    P<ILayerState> getLayerState(int index) const;
    // How many records have a live state.
    int getLiveCount() const;

    // The window's size changed: every live state gets its new rectangle.
    void setSize(CSize size);
    CSize getSize() const { return m_size; }
    const P<ITextSource>& getTextSource() const { return m_source; }

    // Advances the live animations; true when a picture changed.
    bool update(std::int64_t now);
    // When the last live animation has played, or -1 without live states.
    std::int64_t getEndTime() const;
    // The earliest time a live picture changes by itself, or -1.
    std::int64_t getNextChangeTime() const;
    // Paints the live states in order.
    void paint(CPainter& painter) const;

private:
    CWindow& m_window;
    P<ITextSource> m_source;
    std::vector<Record> m_records;
    CSize m_size;
};

}  // namespace fenn::gui::skin
