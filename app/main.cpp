#include "app/ProcessEntry.h"

// The application takes no arguments: everything happens in its window.
int main()
{
    return tbx::runProcessEntry();
}
