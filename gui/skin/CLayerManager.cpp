#include "gui/skin/CLayerManager.h"

#include <algorithm>

#include "gui/CPainter.h"

namespace fenn::gui::skin {

CLayerManager::CLayerManager(CWindow& window, P<ITextSource> source) : m_window(window), m_source(std::move(source)) {}

void CLayerManager::addLayer(const P<ILayer>& layer)
{
    if (!layer) return;
    for (Record& record : m_records) {
        if (record.layer == layer) {
            ++record.useCount;
            return;
        }
    }
    const auto place =
        std::upper_bound(m_records.begin(), m_records.end(), layer->getOrder(),
                         [](int order, const Record& record) { return order < record.layer->getOrder(); });
    m_records.insert(place, Record{layer, nullptr, 1});
}

void CLayerManager::addLayers(const LayerList& layers)
{
    for (const P<ILayer>& layer : layers) addLayer(layer);
}

void CLayerManager::updateLayers(const LayerList& active, std::int64_t now)
{
    for (Record& record : m_records) {
        const bool wanted = std::find(active.begin(), active.end(), record.layer) != active.end();
        if (!wanted) {
            record.state = nullptr;
        } else if (!record.state) {
            record.state = record.layer->createState(m_window, m_source, m_size, now);
            record.state->update(now);
        }
    }
}

bool CLayerManager::refreshLayers(const String& name, std::int64_t now)
{
    bool refreshed = false;
    for (Record& record : m_records) {
        if (!record.state || !record.layer->usesProperty(name)) continue;
        record.state = record.layer->createState(m_window, m_source, m_size, now);
        record.state->update(now);
        refreshed = true;
    }
    return refreshed;
}

P<ILayerState> CLayerManager::getLayerState(int index) const
{
    if (index < 0 || index >= getLayerCount()) return nullptr;
    return m_records[static_cast<std::size_t>(index)].state;
}

int CLayerManager::getLiveCount() const
{
    return static_cast<int>(std::count_if(m_records.begin(), m_records.end(),
                                          [](const Record& record) { return record.state != nullptr; }));
}

void CLayerManager::setSize(CSize size)
{
    m_size = size;
    for (Record& record : m_records) {
        if (record.state) record.state->setRect(record.layer->getRect(size));
    }
}

bool CLayerManager::update(std::int64_t now)
{
    bool changed = false;
    for (Record& record : m_records) {
        if (record.state && record.state->update(now)) changed = true;
    }
    return changed;
}

std::int64_t CLayerManager::getEndTime() const
{
    std::int64_t end = -1;
    for (const Record& record : m_records) {
        if (record.state) end = std::max(end, record.state->getEndTime());
    }
    return end;
}

std::int64_t CLayerManager::getNextChangeTime() const
{
    std::int64_t next = -1;
    for (const Record& record : m_records) {
        if (!record.state) continue;
        const std::int64_t change = record.state->getNextChangeTime();
        if (change >= 0 && (next < 0 || change < next)) next = change;
    }
    return next;
}

void CLayerManager::paint(CPainter& painter) const
{
    for (const Record& record : m_records) {
        if (record.state) record.state->paint(painter);
    }
}

}  // namespace fenn::gui::skin
