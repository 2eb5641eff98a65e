#pragma once

#include <cups/ipp.h>

#include <memory>

namespace pdeprint {

struct IppDeleter
{
    void operator()(ipp_t *ipp) const { ippDelete(ipp); }
};
// An IPP message owned by whoever holds it.
using IppPtr = std::unique_ptr<ipp_t, IppDeleter>;

} // namespace pdeprint
