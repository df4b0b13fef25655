// PrintPicture: the default printer, the two banners, the picture's five bands and its texts.
#include <windows.h>
#include <winspool.h>

#include <cstring>
#include <string>
#include <vector>

#include "core/app.h"
#include "graphics/control_dc.h"
#include "graphics/himage_ops.h"
#include "screens/print_job.h"
#include "screens/print_layout.h"
#include "widgets/widget_classes.h"

namespace qv {
namespace {

constexpr std::uint32_t kTopBannerImage = 263;
constexpr std::uint32_t kBottomBannerImage = 264;

// The default printer's name, or "" when there is none. Wine's spooler lists no printer for
// PRINTER_ENUM_DEFAULT even when one is set, so an empty list asks GetDefaultPrinterA too.
std::string DefaultPrinter() {
  DWORD needed = 0, count = 0;
  EnumPrintersA(PRINTER_ENUM_DEFAULT, nullptr, 5, nullptr, 0, &needed, &count);
  std::string name;
  if (needed > 0) {
    HGLOBAL block = GlobalAlloc(GMEM_FIXED, needed);
    if (!block) return name;
    auto* bytes = static_cast<BYTE*>(block);
    const BOOL listed = EnumPrintersA(PRINTER_ENUM_DEFAULT, nullptr, 5, bytes, needed, &needed,
                                      &count);
    if (!listed) {
      GlobalFree(block);
      return name;  // the enumeration failed: nothing is printed
    }
    const auto* first = reinterpret_cast<const PRINTER_INFO_5A*>(bytes);
    if (count > 0 && first->pPrinterName) name = first->pPrinterName;
    GlobalFree(block);
  }
  if (name.empty()) {
    char buffer[256] = {};
    DWORD size = sizeof buffer;
    if (GetDefaultPrinterA(buffer, &size)) name = buffer;
  }
  return name;
}

// Everything the job opens, released on every path.
struct PrintResources {
  HANDLE file = INVALID_HANDLE_VALUE;
  HDC printer = nullptr;
  HDC memory = nullptr;
  ~PrintResources() {
    if (memory) DeleteDC(memory);
    if (printer) DeleteDC(printer);
    if (file != INVALID_HANDLE_VALUE) CloseHandle(file);
  }
};

bool ReadAt(HANDLE file, std::uint64_t offset, void* into, DWORD size) {
  LARGE_INTEGER at;
  at.QuadPart = static_cast<LONGLONG>(offset);
  DWORD read = 0;
  return SetFilePointerEx(file, at, nullptr, FILE_BEGIN) &&
         ReadFile(file, into, size, &read, nullptr) && read == size;
}

// A DIB section of the header (and its colours) selected into the memory context; stretched
// from there onto the page so that the printer halftones it.
class Section {
 public:
  Section(HDC memory, const BITMAPINFO* info) : memory_(memory) {
    bitmap_ = CreateDIBSection(memory, info, DIB_RGB_COLORS, &bits_, nullptr, 0);
    if (bitmap_) previous_ = SelectObject(memory, bitmap_);
  }
  ~Section() {
    if (previous_) SelectObject(memory_, previous_);
    if (bitmap_) DeleteObject(bitmap_);
  }
  Section(const Section&) = delete;
  Section& operator=(const Section&) = delete;
  std::uint8_t* bits() const { return bitmap_ ? static_cast<std::uint8_t*>(bits_) : nullptr; }

 private:
  HDC memory_;
  HBITMAP bitmap_ = nullptr;
  HGDIOBJ previous_ = nullptr;
  void* bits_ = nullptr;
};

void PrintBanner(const PrintResources& r, const ControlDC& banner, const PrintRect& at) {
  HIMAGE image = banner.Dib();
  const auto* info = reinterpret_cast<const BITMAPINFO*>(image);
  Section section(r.memory, info);
  if (!section.bits()) return;
  const std::size_t size = static_cast<std::size_t>(ImageStride(image)) *
                           static_cast<std::size_t>(ImageHeight(image));
  std::memcpy(section.bits(), DibPixels(image), size);
  GdiFlush();
  StretchBlt(r.printer, at.x, at.y, at.width, at.height, r.memory, 0, 0, ImageWidth(image),
             ImageHeight(image), SRCCOPY);
}

// The bands: the file's rows run bottom-up, so band 0 holds the bottom fifth and is printed
// lowest; the rows beyond five whole bands are never read.
void PrintBands(const PrintResources& r, HWND wait, const std::uint8_t* head,
                const PrintablePicture& picture, const PrintLayout& layout) {
  std::vector<std::uint8_t> header(head + 14, head + kPrintHeadBytes);
  auto* info = reinterpret_cast<BITMAPINFO*>(header.data());
  info->bmiHeader.biHeight = layout.rowsPerBand;
  info->bmiHeader.biSizeImage = 0;
  Section section(r.memory, info);
  if (!section.bits()) return;
  const DWORD bandBytes = static_cast<DWORD>(picture.stride * static_cast<std::size_t>(layout.rowsPerBand));
  for (int i = 0; i < kPrintBands; ++i) {
    if (wait) ShowPrintProgress(wait, i);
    const std::uint64_t offset = picture.pixelOffset + static_cast<std::uint64_t>(i) * bandBytes;
    if (!ReadAt(r.file, offset, section.bits(), bandBytes)) return;
    GdiFlush();
    const PrintRect& band = layout.band[i];
    StretchBlt(r.printer, band.x, band.y, band.width, band.height, r.memory, 0, 0, picture.width,
               layout.rowsPerBand, SRCCOPY);
  }
}

// The interface's cream lettering is made for dark screens and all but vanishes on white paper;
// the page is printed in the dark brown ink of the information screen's parchment instead.
constexpr COLORREF kPrintInk = RGB(72, 44, 20);

void PrintText(HDC printer, const std::string& text, int height, const PrintRect& box) {
  if (text.empty()) return;
  DrawWrappedText(printer, text.c_str(), "Arial", 400, height, kPrintInk, false, 0, 0,
                  box.x, box.y, box.width, box.height);
}

}  // namespace

bool PrintPicture(HWND waitWindow, const char* bmpPath, const std::string& title,
                  const std::string& description) {
  if (!bmpPath) return false;
  const std::string printer = DefaultPrinter();
  if (printer.empty()) return false;

  PrintResources r;
  r.file = CreateFileA(bmpPath, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                       FILE_ATTRIBUTE_NORMAL, nullptr);
  r.printer = CreateDCA("WINSPOOL", printer.c_str(), nullptr, nullptr);
  if (r.file == INVALID_HANDLE_VALUE || !r.printer) return false;

  // Everything that could refuse is checked before the document starts, so that a bad file or
  // page never leaves a half-printed sheet.
  std::uint8_t head[kPrintHeadBytes];
  LARGE_INTEGER fileSize{};
  PrintablePicture picture;
  if (!GetFileSizeEx(r.file, &fileSize) || !ReadAt(r.file, 0, head, sizeof head) ||
      !CheckPrintablePicture(head, sizeof head, static_cast<std::uint64_t>(fileSize.QuadPart),
                             picture)) {
    return false;
  }
  PrintLayout layout;
  if (!ComputePrintLayout(GetDeviceCaps(r.printer, HORZRES), GetDeviceCaps(r.printer, VERTRES),
                          picture.width, picture.height, layout)) {
    return false;
  }
  ControlDC top, bottom;
  if (!top.LoadById(kTopBannerImage) || !bottom.LoadById(kBottomBannerImage)) return false;
  r.memory = CreateCompatibleDC(r.printer);
  if (!r.memory) return false;

  DOCINFOA document{};
  document.cbSize = sizeof document;
  document.lpszDocName = "Orvanta Collection";
  if (StartDocA(r.printer, &document) <= 0) return false;
  if (StartPage(r.printer) <= 0) {
    AbortDoc(r.printer);
    return false;
  }
  SetStretchBltMode(r.printer, HALFTONE);
  SetBrushOrgEx(r.printer, 0, 0, nullptr);
  SetStretchBltMode(r.memory, HALFTONE);
  PrintBanner(r, top, layout.topBanner);
  PrintBanner(r, bottom, layout.bottomBanner);
  PrintBands(r, waitWindow, head, picture, layout);
  PrintText(r.printer, title, layout.titleHeight, layout.title);
  PrintText(r.printer, description, layout.descriptionHeight, layout.description);
  EndPage(r.printer);
  EndDoc(r.printer);
  return true;
}

}  // namespace qv
