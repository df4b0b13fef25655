// The information screen over the game's data, and printing: refusals of bad pictures, no
// printer at all, and (when the test command runs a CUPS-PDF printer) one real page whose
// layout is written for check-print.sh to compare with the PDF.
#include "screens/info_window.h"

#include <gtest/gtest.h>
#include <winspool.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "core/app.h"
#include "core/resource_ids.h"
#include "graphics/resource_file.h"
#include "puzzle/puzzle_model.h"
#include "screens/print_job.h"
#include "screens/print_layout.h"
#include "widgets/widget_classes.h"
#include "win/support/real_input.h"

namespace qv {
namespace {

const std::string kDist = test::GameDataFolder();
using test::Pump;
using test::PumpUntil;

// Where the printer's PDF files land (a Unix folder), when the test command runs one.
const char* PdfFolder() { return std::getenv("QV_PRINT_OUTPUT"); }

class InfoEnvironment : public ::testing::Environment {
 public:
  void SetUp() override {
    HINSTANCE instance = GetModuleHandleA(nullptr);
    ASSERT_TRUE(OpenResourceFile((kDist + "Quorvex.rf").c_str())) << kDist;
    ASSERT_TRUE(RegisterWidgetClasses(instance));
    ASSERT_TRUE(RegisterInfoClasses(instance));
    HWND main = test::CreateGameMainWindow();
    ASSERT_TRUE(main);
    SetMainWindow(main);
    SetProgramFolder(kDist);
  }
};
const auto* const g_environment = ::testing::AddGlobalTestEnvironment(new InfoEnvironment);

HWND OpenWith(const std::string& picturePath) {
  if (picturePath.empty()) {
    FreePuzzlePicture();
  } else {
    EXPECT_TRUE(LoadPuzzlePicture(picturePath.c_str())) << picturePath;
  }
  HWND screen = OpenInfoScreen();
  Pump(50);
  return screen;
}

bool Enabled(HWND button) { return SendMessageA(button, MWM_GETENABLED, 0, 0) != 0; }

void CloseAndWait(HWND screen) {
  if (IsWindow(screen)) SendMessageA(screen, WM_CLOSE, 0, 0);
  PumpUntil([&] { return !IsWindow(screen); });
}

std::vector<char> ReadAll(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::string WriteTemp(const char* name, const std::vector<char>& bytes) {
  char temp[MAX_PATH] = {};
  GetTempPathA(MAX_PATH, temp);
  const std::string path = std::string(temp) + name;
  std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return path;
}

TEST(InfoScreen, ABuiltInPictureOpensCentredWithPrintingAndKeysClose) {
  HWND screen = OpenWith(kDist + "Image\\3.bmp");
  ASSERT_TRUE(screen);
  RECT client, outer;
  GetClientRect(screen, &client);
  GetWindowRect(screen, &outer);
  EXPECT_EQ(client.right, 520);
  EXPECT_EQ(client.bottom, 400);
  EXPECT_NEAR((outer.left + outer.right) / 2, GetSystemMetrics(SM_CXSCREEN) / 2, 2);
  EXPECT_FALSE(IsWindowEnabled(MainWindow()));
  EXPECT_TRUE(FindWindowExA(screen, nullptr, kInfoPreviewClass, nullptr));
  EXPECT_TRUE(Enabled(GetDlgItem(screen, kInfoPrintId)));

  SendMessageA(screen, WM_CHAR, VK_ESCAPE, 0);
  EXPECT_TRUE(PumpUntil([&] { return !IsWindow(screen); }));
  EXPECT_TRUE(IsWindowEnabled(MainWindow()));

  screen = OpenWith(kDist + "Image\\3.bmp");
  EXPECT_EQ(SendMessageA(screen, UM_CHILDCHAR, VK_RETURN, 0), 1);
  EXPECT_TRUE(PumpUntil([&] { return !IsWindow(screen); }));
}

TEST(InfoScreen, NoGameCannotBePrintedAPhotoOfThePlayersOwnCanAndCloseCloses) {
  for (const std::string& picture :
       {std::string(), WriteTemp("qv_info_own.bmp", ReadAll(kDist + "Image/5.bmp"))}) {
    HWND screen = OpenWith(picture);
    ASSERT_TRUE(screen) << picture;
    EXPECT_EQ(Enabled(GetDlgItem(screen, kInfoPrintId)), !picture.empty()) << picture;
    test::Click(GetDlgItem(screen, kInfoCloseId));
    EXPECT_TRUE(PumpUntil([&] { return !IsWindow(screen); })) << picture;
  }
}

TEST(InfoScreen, DraggedByItsBackground) {
  HWND screen = OpenWith(kDist + "Image\\3.bmp");
  ASSERT_TRUE(screen);
  RECT before, after;
  GetWindowRect(screen, &before);
  test::Drag(test::OnScreen(screen, 130, 380), test::OnScreen(screen, 170, 350));
  Pump(100);
  GetWindowRect(screen, &after);
  EXPECT_EQ(after.left - before.left, 40);
  EXPECT_EQ(after.top - before.top, -30);
  CloseAndWait(screen);
}

TEST(Printing, BadPicturesAreRefusedBeforeAnyDocumentStarts) {
  std::vector<char> bytes = ReadAll(kDist + "Image/1.bmp");
  ASSERT_GT(bytes.size(), 4000u);
  std::vector<char> truncated(bytes.begin(), bytes.end() - 5000);  // more than the dropped rows
  std::vector<char> wrongDepth = bytes;
  wrongDepth[28] = 24;
  std::vector<char> hugeWidth = bytes;
  hugeWidth[21] = 0x40;  // 1 << 30 pixels wide
  for (const auto& [name, file] :
       {std::pair{"qv_truncated.bmp", truncated}, std::pair{"qv_depth.bmp", wrongDepth},
        std::pair{"qv_width.bmp", hugeWidth}, std::pair{"qv_header.bmp", std::vector<char>(60, 'B')}}) {
    EXPECT_FALSE(PrintPicture(nullptr, WriteTemp(name, file).c_str(), "", "")) << name;
  }
  EXPECT_FALSE(PrintPicture(nullptr, (kDist + "Image/missing.bmp").c_str(), "", ""));
  EXPECT_FALSE(PrintPicture(nullptr, nullptr, "", ""));
}

TEST(Printing, WithoutAPrinterNothingIsPrintedAndNothingIsSaid) {
  if (PdfFolder()) GTEST_SKIP() << "a printer is set up";
  EXPECT_FALSE(PrintPicture(nullptr, (kDist + "Image/1.bmp").c_str(), "", ""));
  HWND screen = OpenWith(kDist + "Image\\1.bmp");
  ASSERT_TRUE(screen);
  test::Click(GetDlgItem(screen, kInfoPrintId));
  Pump(300);
  EXPECT_FALSE(FindWindowA(kMessageBoxClass, nullptr));
  EXPECT_FALSE(FindWindowA(kPrintWaitClass, nullptr));
  EXPECT_TRUE(IsWindow(screen));
  EXPECT_TRUE(IsWindowEnabled(screen));
  CloseAndWait(screen);
}

// The PDF files with their last write times: a fresh printer server numbers its jobs from 1
// again, so a new page may come under the name of an old one.
std::map<std::string, std::uint64_t> PdfFiles(const std::string& folder) {
  std::map<std::string, std::uint64_t> files;
  WIN32_FIND_DATAA found;
  HANDLE search = FindFirstFileA((folder + "\\*.pdf").c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return files;
  do {
    files[found.cFileName] =
        (std::uint64_t{found.ftLastWriteTime.dwHighDateTime} << 32) | found.ftLastWriteTime.dwLowDateTime;
  } while (FindNextFileA(search, &found));
  FindClose(search);
  return files;
}

std::string WineName(std::string unixPath) {
  for (char& c : unixPath) c = c == '/' ? '\\' : c;
  return "Z:" + unixPath;
}

// The page the default printer gives, as the print job measures it.
bool PageSize(int& width, int& height) {
  char name[256] = {};
  DWORD size = sizeof name;
  if (!GetDefaultPrinterA(name, &size)) return false;
  HDC printer = CreateDCA("WINSPOOL", name, nullptr, nullptr);
  if (!printer) return false;
  width = GetDeviceCaps(printer, HORZRES);
  height = GetDeviceCaps(printer, VERTRES);
  DeleteDC(printer);
  return true;
}

void WriteRect(std::ofstream& out, const char* what, const PrintRect& r) {
  out << what << ' ' << r.x << ' ' << r.y << ' ' << r.width << ' ' << r.height << '\n';
}

// The wait window shows its steps while the page is made; the page itself is checked by
// check-print.sh from what this test writes to print-result.txt. The picture is a photograph
// of the player's own (built-in pictures print the same way, with their names from the string
// table): it prints under its file name with the localized description of such pictures.
TEST(Printing, ThePrintButtonPrintsOnePageOnTheDefaultPrinter) {
  DeleteFileA("print-result.txt");
  if (!PdfFolder()) GTEST_SKIP() << "no printer: QV_PRINT_OUTPUT is not set";
  const std::string folder = WineName(PdfFolder());
  const std::map<std::string, std::uint64_t> before = PdfFiles(folder);
  int width = 0, height = 0;
  ASSERT_TRUE(PageSize(width, height));
  // Image\4.bmp under the name a photograph of the player's own would have.
  const std::string picture = WriteTemp("Harbour at dawn.bmp", ReadAll(kDist + "Image/4.bmp"));
  HWND screen = OpenWith(picture);
  ASSERT_TRUE(screen);
  test::Click(GetDlgItem(screen, kInfoPrintId));
  EXPECT_TRUE(PumpUntil([&] { return !FindWindowA(kPrintWaitClass, nullptr); }));
  EXPECT_TRUE(IsWindowEnabled(screen));

  std::string printed;
  for (int waited = 0; waited < 60000 && printed.empty(); waited += 250) {
    Pump(250);
    for (const auto& [name, written] : PdfFiles(folder)) {
      const auto old = before.find(name);
      if (old == before.end() || old->second != written) printed = name;
    }
  }
  ASSERT_FALSE(printed.empty()) << "no PDF appeared in " << folder;
  // cups-pdf writes the file in one go once the job is converted; give it a moment to finish.
  Pump(1500);
  CloseAndWait(screen);

  std::vector<char> bytes = ReadAll(picture);
  PrintablePicture file;
  ASSERT_TRUE(CheckPrintablePicture(reinterpret_cast<const std::uint8_t*>(bytes.data()),
                                    bytes.size(), bytes.size(), file));
  PrintLayout layout;
  ASSERT_TRUE(ComputePrintLayout(width, height, file.width, file.height, layout));
  std::ofstream out("print-result.txt", std::ios::binary);
  out << "pdf " << PdfFolder() << '/' << printed << '\n';
  out << "page " << width << ' ' << height << '\n';
  out << "picture " << QV_GAME_DATA_DIR << "/Image/4.bmp\n";
  out << "rows " << layout.rowsPerBand << '\n';
  WriteRect(out, "top", layout.topBanner);
  WriteRect(out, "bottom", layout.bottomBanner);
  for (const PrintRect& band : layout.band) WriteRect(out, "band", band);
  out << "name Harbour at dawn\n";
  out << "description " << LocalizedString(IDS_OWN_PICTURE_DESCRIPTION, 1001) << '\n';
}

}  // namespace
}  // namespace qv
