#pragma once

#include "gui/CWindow.h"

namespace fenn::gui {

// Shows how far a job has come: a rounded track across the window, filled
// with the accent colour from the left in proportion to the position in
// 0..maximum. The bar's height is the bar height factor times the window's
// height, centred. It grows sideways but not in height. Owned by its parent
// window; GUI thread.
class CProgressBar : public CWindow
{
public:
    static constexpr double kDefaultBarHeightFactor = 0.4;

    CProgressBar();

    // A maximum below 1 counts as 1; the position is clamped to the new range.
    void setMaximum(int maximum);
    int getMaximum() const { return m_maximum; }
    // Clamped to 0..maximum.
    void setPosition(int position);
    int getPosition() const { return m_position; }
    // Position / maximum, 0.0 to 1.0.
    double getFraction() const { return static_cast<double>(m_position) / m_maximum; }
    // Clamped to 0.05..1.0.
    void setBarHeightFactor(double factor);
    double getBarHeightFactor() const { return m_barHeightFactor; }

    CSize computeSize(SizeType type) override;
    void paint(CPainter& painter) override;

private:
    int m_maximum = 100;
    int m_position = 0;
    double m_barHeightFactor = kDefaultBarHeightFactor;
};

}  // namespace fenn::gui
