#pragma once

namespace tbx {

// The whole percents last written to progress bars. They are shared by
// every job of the process, so a job that starts where the last one
// stopped writes nothing until its first step changes the value.
struct LastShownPercents
{
    // The bar of the progress window.
    int window = 0;
    // The overall and item bars of the progress page.
    int pageOverall = 0;
    int pageItem = 0;
};

LastShownPercents& getLastShownPercents();

}  // namespace tbx
