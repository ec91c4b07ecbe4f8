// Names and addresses of the product, each written once.
#pragma once

namespace vantrel {

inline constexpr char ProductVersion[] = "1.1.0.92";

inline constexpr char16_t ProductName[] = u"Vantrel";
inline constexpr char ProductNameAnsi[] = "Vantrel";

inline constexpr char16_t VendorName[] = u"Quillmoor";
inline constexpr char VendorNameAnsi[] = "Quillmoor";

// Where users report what went wrong in the editor, unless their interpreter's vendor takes the reports.
inline constexpr char16_t SupportAddress[] = u"support@quillmoor.example";
inline constexpr char16_t DyalogSupportAddress[] = u"support@dyalog.example";

} // namespace vantrel
