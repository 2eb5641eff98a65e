#pragma once

// Keys of the job ticket in the print settings. Whatever consumes a job reads
// them: the names are fixed.
inline constexpr char kSpoolTimeKey[] = "jp.co.nurat.print.PrintSettings.spoolTime";
inline constexpr char kMainCodeCBKey[] = "jp.co.nurat.print.PrintSettings.bc.mainCodecb";
inline constexpr char kMainCodeTicketKey[] = "jp.co.nurat.print.PrintSettings.bc.mainCode";
inline constexpr char kMainCodeCipherKey[] = "jp.co.nurat.print.PrintSettings.bc.mainCode2";
inline constexpr char kSubCodeCBKey[] = "jp.co.nurat.print.PrintSettings.bc.subCodecb";
inline constexpr char kSubCodeTicketKey[] = "jp.co.nurat.print.PrintSettings.bc.subCode";
inline constexpr char kSubCodeCipherKey[] = "jp.co.nurat.print.PrintSettings.bc.subCode2";
inline constexpr char kHoldButtonTicketKey[] = "jp.co.nurat.print.PrintSettings.bc.holdButton";

// A code is cut to this many characters and this many bytes.
inline constexpr int kMaxCodeLength = 32;
