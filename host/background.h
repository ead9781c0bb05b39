// Long work beside the window.
#pragma once

#include "host/photo_file.h"

#include <functional>

// Runs work on a second thread and returns when it is done; meanwhile the window is served, says what is done, and
// moves its bar. A window that is still hidden is shown when the work takes its time. mayStop: whoever closes the
// window sets progress->stop.
void runInBackground(const std::wstring& what, Progress* progress, bool mayStop, const std::function<void()>& work);
