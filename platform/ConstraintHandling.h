#pragma once

#include <QString>

namespace pde {

// Optional part of a host callback: a host that resolves PPD constraints derives
// its callback from this too, and panels find it with dynamic_cast.
class ConstraintHandling
{
public:
    virtual ~ConstraintHandling() = default;

    // Whether the PPD option may take the choice (both by keyword).
    virtual bool willChangePPDOptionKeyValue(const QString &option, const QString &choice) = 0;
};

} // namespace pde
