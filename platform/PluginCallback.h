#pragma once

#include <cups/ppd.h>

namespace pde {

class PrintSession;
class PrintSettings;

// What a host offers the panels it created. Owned by the host; a panel keeps a
// shared reference for its whole life.
class PluginCallback
{
public:
    virtual ~PluginCallback() = default;

    virtual PrintSession *printSession() = 0;
    // The job's print settings, or null.
    virtual PrintSettings *printSettings() = 0;
    // The chosen printer's parsed PPD, borrowed, or null.
    virtual ppd_file_t *ppdFile() = 0;
};

} // namespace pde
