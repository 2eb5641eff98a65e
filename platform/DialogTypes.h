#pragma once

namespace pde {

// The dialog type a host asks its panel factories for when it prints.
inline constexpr char kPrintDialogType[] = "BDB091F4-E57F-11D3-B5CC-0050E4603277";

} // namespace pde
