#pragma once

// The panel's record in a printer's preferences domain, and its keys. Other
// programs read this record: the names are fixed.
inline constexpr char kPreferenceDomainPrefix[] = "jp.co.nurat.mfp.";
inline constexpr char kRecordKey[] = "Billing Code";
inline constexpr char kModelNameKey[] = "Model Name";
inline constexpr char kReleaseNumberKey[] = "Release Number";
inline constexpr char kReleaseNumber[] = "1.00";
inline constexpr char kMainCodeCheckBoxKey[] = "Main Code CheckBox";
inline constexpr char kMainCodeKey[] = "Main Code";
inline constexpr char kSubCodeCheckBoxKey[] = "Sub Code CheckBox";
inline constexpr char kSubCodeKey[] = "Sub Code";
inline constexpr char kHoldButtonKey[] = "hold button";
