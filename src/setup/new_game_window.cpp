// CWNDNEW: the new-game screen, where the picture, its size, the piece count and shape are chosen.
#include "setup/new_game_window.h"

#include <memory>
#include <string>
#include <vector>

#include "graphics/control_dc.h"
#include "graphics/file_list.h"
#include "graphics/himage_draw.h"
#include "graphics/himage_ops.h"
#include "puzzle/puzzle_model.h"
#include "puzzle/puzzle_windows.h"
#include "setup/new_game_logic.h"
#include "setup/new_game_parts.h"
#include "setup/pickers.h"
#include "core/app.h"
#include "core/resource_ids.h"
#include "system/assert.h"
#include "widgets/widget_classes.h"
#include "widgets/widget_messages.h"
#include "widgets/widget_window.h"

namespace qv {
namespace {

namespace ng = newgame;
using widget::RecordOf;

constexpr DWORD kScreenStyle = WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN | WS_DLGFRAME;
constexpr DWORD kChildStyle = WS_CHILD | WS_CLIPSIBLINGS;
constexpr int kRollStepMs = 4;
constexpr int kTextHeight = 18;

// What OpenNewGameScreen hands to WM_CREATE: the pictures found.
struct OpenRequest {
  std::vector<std::string> names;
};

struct NewGameRecord {
  // Pictures the widgets borrow; they outlive every child (children go first at destruction).
  ControlDC background;
  PackedDib backdrop;  // 224 in true colour with the current tab's heading
  ControlDC confirmImage, cancelImage, cyclerImage, largerImage, smallerImage, sliderImage,
      helpImage, previewImage;
  ControlDC tabImages[ng::kTabCount];
  ControlDC shapeImages[ng::kShapeCount];
  PackedDib arrowStrips[2];

  HWND confirm = nullptr, cancel = nullptr, help = nullptr, preview = nullptr;
  HWND tabs[ng::kTabCount] = {};
  HWND shapes[ng::kShapeCount] = {};
  HWND cycler = nullptr, larger = nullptr, smaller = nullptr, sizeSlider = nullptr,
       sizePicker = nullptr, countSlider = nullptr, countPicker = nullptr;
  HWND countLabels[3] = {};
  HWND countValues[3] = {};
  HWND tiles[ng::kTileCount] = {};
  HWND arrows[2] = {};  // back, on
  HWND pictureName = nullptr;

  std::vector<std::string> names;
  ng::PicturePage page;
  int selected = -1;
  int tab = ng::kTabPicture;
  int shape = 0;
};

LPARAM AsParam(HIMAGE image) { return reinterpret_cast<LPARAM>(image); }

HWND Child(HWND parent, const char* className, ng::Point at, bool visible, int width = 10,
           int height = 10) {
  return CreateWindowExA(0, className, "", kChildStyle | (visible ? WS_VISIBLE : 0), at.x, at.y,
                         width, height, parent, nullptr, GetModuleHandleA(nullptr), nullptr);
}

HWND Push(HWND parent, ControlDC& image, std::uint32_t id, ng::Point at, int identifier) {
  image.LoadById(id);
  return CreatePictureChild(parent, kCommandClass, at.x, at.y, image.Dib(), identifier);
}

HWND Anim(HWND parent, ControlDC& image, std::uint32_t id, ng::Point at, int frames,
          bool visible) {
  image.LoadById(id);
  // The strip's columns must be known before the picture, which sizes the widget.
  HWND anim = CreatePictureChild(parent, kAnimClass, at.x, at.y, nullptr, 0, visible);
  SendMessageA(anim, anim::MWM_SETCOLUMNS, 0, frames);
  if (image.Dib()) SendMessageA(anim, MWM_SETIMAGE, 0, AsParam(image.Dib()));
  return anim;
}

HWND Check(HWND parent, HIMAGE image, ng::Point at, int identifier, bool visible, bool checked) {
  HWND check = CreatePictureChild(parent, kCheckClass, at.x, at.y, nullptr, identifier, visible);
  SendMessageA(check, MWM_SETRADIO, 0, 1);
  if (image) SendMessageA(check, MWM_SETIMAGE, 0, AsParam(image));
  if (checked) SendMessageA(check, MWM_SETCHECK, 0, 1);
  return check;
}

HWND Slider(HWND parent, HIMAGE image, int maximum) {
  HWND slider = Child(parent, kScrollClass, ng::kSliderPosition, false);
  SendMessageA(slider, scroll::MWM_SETPARTSIZE1, 0, 37);
  SendMessageA(slider, scroll::MWM_SETPARTSIZE2, 0, 76);
  SendMessageA(slider, scroll::MWM_SETPARTSIZE3, 0, 37);
  SendMessageA(slider, scroll::MWM_SETMAXIMUM, 0, maximum);
  SendMessageA(slider, scroll::MWM_SETSTEP, 0, 1);
  if (image) SendMessageA(slider, MWM_SETIMAGE, 0, AsParam(image));
  return slider;
}

HWND Text(HWND parent, const NewGameRecord& r, ng::Point at, const std::string& text,
          bool visible) {
  HWND caption = Child(parent, kTextClass, at, visible);
  SendMessageA(caption, MWM_SETIMAGE, 0, AsParam(r.backdrop.get()));
  SendMessageA(caption, text::MWM_SETFONTHEIGHT, 0, kTextHeight);
  SendMessageA(caption, text::MWM_SETNORMALWEIGHT, 0, FW_BOLD);
  SendMessageA(caption, text::MWM_SETHOVERWEIGHT, 0, FW_BOLD);
  SendMessageA(caption, text::MWM_SETTEXTCOLOUR, 0, RGB(74, 44, 20));
  SendMessageA(caption, text::MWM_SETSHADOWOFFSET, 0, 1);
  SendMessageA(caption, text::MWM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
  SendMessageA(caption, text::MWM_SETFACENAME, 0, reinterpret_cast<LPARAM>(kProgramFace));
  // Captions here only inform: they take no clicks.
  EnableWindow(caption, FALSE);
  return caption;
}

void SetText(HWND caption, const std::string& text) {
  SendMessageA(caption, text::MWM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

void ShowChild(HWND child, bool show) {
  if (show) {
    ShowInPlace(child);
  } else {
    HideInPlace(child);
  }
}

// ---- Panels ---------------------------------------------------------------------------------

std::vector<HWND> PanelControls(const NewGameRecord& r, int tab) {
  switch (tab) {
    case ng::kTabPicture: {
      std::vector<HWND> controls(r.tiles, r.tiles + ng::kTileCount);
      controls.push_back(r.pictureName);
      return controls;
    }
    case ng::kTabSize:
      return {r.larger, r.smaller, r.sizeSlider, r.sizePicker};
    case ng::kTabPieces: {
      std::vector<HWND> controls{r.countSlider, r.countPicker};
      controls.insert(controls.end(), r.countLabels, r.countLabels + 3);
      controls.insert(controls.end(), r.countValues, r.countValues + 3);
      return controls;
    }
    default: {
      std::vector<HWND> controls(r.shapes, r.shapes + ng::kShapeCount);
      controls.push_back(r.cycler);
      return controls;
    }
  }
}

void ShowArrows(const NewGameRecord& r, bool panelShown) {
  ShowChild(r.arrows[0], panelShown && ng::CanPageBack(r.page));
  ShowChild(r.arrows[1], panelShown && ng::CanPageOn(r.page));
}

void ShowPanel(const NewGameRecord& r, int tab, bool show) {
  for (HWND control : PanelControls(r, tab)) ShowChild(control, show);
  if (tab == ng::kTabPicture) ShowArrows(r, show);
}

// ---- Texts and sliders -----------------------------------------------------------------------

void UpdateCountTexts(NewGameRecord& r) {
  const ng::CountTexts values = ng::CountValueTexts(ThePickers());
  const std::string* texts[3] = {&values.rows, &values.columns, &values.pieces};
  for (int line = 0; line < 3; ++line) {
    RECT label;
    GetWindowRect(r.countLabels[line], &label);
    MapWindowPoints(nullptr, GetParent(r.countLabels[line]), reinterpret_cast<POINT*>(&label), 2);
    SetWindowPos(r.countValues[line], nullptr, ng::CountValueX(label.right), label.top, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOOWNERZORDER);
    SetText(r.countValues[line], *texts[line]);
  }
}

void UpdateCountSlider(NewGameRecord& r) {
  const PickerState& pickers = ThePickers();
  SendMessageA(r.countSlider, scroll::MWM_SETMAXIMUM, 0, MenuNuevoScrollCantidadGetMax(pickers));
  SendMessageA(r.countSlider, scroll::MWM_SETVALUE, 0, GetCountPosition(pickers));
}

void UpdateAllFromPickers(NewGameRecord& r) {
  SendMessageA(r.sizeSlider, scroll::MWM_SETVALUE, 0, GetSizePercentage(ThePickers()));
  UpdateCountSlider(r);
  UpdateCountTexts(r);
}

void RedrawPickers(void* context) {
  NewGameRecord* r = RecordOf<NewGameRecord>(static_cast<HWND>(context));
  if (!r) return;
  if (r->sizePicker) InvalidateRect(r->sizePicker, nullptr, FALSE);
  if (r->countPicker) InvalidateRect(r->countPicker, nullptr, FALSE);
}

// ---- Pictures --------------------------------------------------------------------------------

// The pictures of Image\ in the order the tiles show them.
std::vector<std::string> ListPictures() {
  std::vector<std::string> names;
  FileList list;
  const std::string pattern = ProgramFolder() + "Image\\*.bmp";
  if (list.Build(pattern.c_str())) names = list.Names();
  ng::SortPictureNames(names);
  return names;
}

std::string PicturePath(const NewGameRecord& r, int picture) {
  return ProgramFolder() + "Image\\" + r.names[static_cast<std::size_t>(picture)];
}

std::string PictureTitle(const NewGameRecord& r, int picture) {
  if (picture < 0) return " ";
  const std::string& name = r.names[static_cast<std::size_t>(picture)];
  const int number = ng::PictureNumber(name);
  const std::string title = number > 0 ? ModuleString(5000u + static_cast<unsigned>(number), 90)
                                       : std::string();
  return title.empty() ? name.substr(0, name.rfind('.')) : title;
}

void CentrePictureName(const NewGameRecord& r) {
  RECT rect;
  GetWindowRect(r.pictureName, &rect);
  const int width = rect.right - rect.left;
  SetWindowPos(r.pictureName, nullptr, ng::kPanelX + (ng::kPanelWidth - width) / 2, ng::kNameY, 0,
               0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOOWNERZORDER);
}

void FillTiles(NewGameRecord& r) {
  const std::string ownCaption = LocalizedString(IDS_OWN_PICTURE_TILE, 60);
  for (int tile = 0; tile < ng::kTileCount; ++tile) {
    if (tile == ng::OwnPictureTile(r.page)) {
      SendMessageA(r.tiles[tile], NGM_SETOWNPICTURE, 0,
                   reinterpret_cast<LPARAM>(ownCaption.c_str()));
      continue;
    }
    const int picture = ng::PictureOfTile(r.page, tile);
    const std::string path = picture >= 0 ? PicturePath(r, picture) : std::string();
    SendMessageA(r.tiles[tile], NGM_SETPICTURE, static_cast<WPARAM>(picture < 0 ? 0 : picture),
                 picture >= 0 ? reinterpret_cast<LPARAM>(path.c_str()) : 0);
    SendMessageA(r.tiles[tile], NGM_SETSELECTED, 0, picture >= 0 && picture == r.selected);
  }
}

HWND TileOf(const NewGameRecord& r, int picture) {
  for (HWND tile : r.tiles) {
    if (SendMessageA(tile, NGM_GETPICTURE, 0, 0) == picture) return tile;
  }
  return nullptr;
}

// Loads a picture as the puzzle's and recomputes the pickers; an unreadable file keeps the
// previous choice and is shown as unavailable.
bool SelectPicture(NewGameRecord& r, int picture) {
  if (picture < 0 || picture >= static_cast<int>(r.names.size())) return false;
  const std::string path = PicturePath(r, picture);
  if (!LoadPuzzlePicture(path.c_str())) {
    if (HWND tile = TileOf(r, picture)) SendMessageA(tile, NGM_SETUNAVAILABLE, 0, 0);
    return false;
  }
  if (HWND old = TileOf(r, r.selected)) SendMessageA(old, NGM_SETSELECTED, 0, 0);
  r.selected = picture;
  if (HWND tile = TileOf(r, picture)) SendMessageA(tile, NGM_SETSELECTED, 0, 1);
  HIMAGE image = PuzzlePicture();
  PickerPictureChosen(ThePickers(), ImageWidth(image), ImageHeight(image), Puzzle().boardWidth,
                      Puzzle().boardHeight);
  UpdateAllFromPickers(r);
  SetText(r.pictureName, PictureTitle(r, picture));
  CentrePictureName(r);
  return true;
}

void TurnPage(NewGameRecord& r, bool forward) {
  r.page = forward ? ng::NextPage(r.page) : ng::PreviousPage(r.page);
  FillTiles(r);
  ShowArrows(r, r.tab == ng::kTabPicture);
}

int IndexOfName(const std::vector<std::string>& names, const std::string& name) {
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (lstrcmpiA(names[i].c_str(), name.c_str()) == 0) return static_cast<int>(i);
  }
  return -1;
}

// The player's photograph became the picture `file` of Image\: the list is read again, the page
// turned to show it and it is chosen. The shape and the tab stay as they were.
void AddOwnPicture(NewGameRecord& r, const std::string& file) {
  const std::string chosen = r.selected >= 0 ? r.names[static_cast<std::size_t>(r.selected)]
                                             : std::string();
  std::vector<std::string> names = ListPictures();
  const int added = IndexOfName(names, file);
  if (added < 0) return;
  r.names = std::move(names);
  r.selected = chosen.empty() ? -1 : IndexOfName(r.names, chosen);
  r.page.count = static_cast<int>(r.names.size());
  r.page = ng::PageShowing(r.page, added);
  FillTiles(r);
  ShowArrows(r, r.tab == ng::kTabPicture);
  SelectPicture(r, added);
}

// The dialog and the message box run their own loops: the record is looked up again after them.
void OnOwnPictureTile(HWND window) {
  const std::string file = ChooseOwnPhoto(window);
  if (NewGameRecord* r = RecordOf<NewGameRecord>(window); r && !file.empty()) {
    AddOwnPicture(*r, file);
  }
}

// ---- Creation --------------------------------------------------------------------------------

void MakeBackdrop(NewGameRecord& r, int tab) {
  r.backdrop = ng::TrueColourCopy(r.background.Dib());
  ControlDC heading;
  if (r.backdrop && heading.LoadById(ng::HeadingImage(tab, CurrentLanguage()))) {
    ng::PastePicture(r.backdrop.get(), ng::kHeadingX, ng::kHeadingY, heading.Dib());
  }
}

void MakeFrameControls(HWND window, NewGameRecord& r) {
  r.confirm = Push(window, r.confirmImage, ng::kConfirmImage, ng::kConfirmPosition, IDOK);
  r.cancel = Push(window, r.cancelImage, ng::kCancelImage, ng::kCancelPosition, IDCANCEL);
  for (int tab = 0; tab < ng::kTabCount; ++tab) {
    r.tabImages[tab].LoadById(ng::TabImage(tab, CurrentLanguage()));
    r.tabs[tab] = Check(window, r.tabImages[tab].Dib(), ng::TabPosition(tab),
                        ng::kFirstTabIdentifier + tab, true, tab == 0);
  }
  r.help = Anim(window, r.helpImage, ng::kHelpImage, ng::kHelpPosition, 10, true);
  r.preview = Anim(window, r.previewImage, ng::kPreviewImage, ng::kPreviewPosition, 10, true);
}

void MakePicturePanel(HWND window, NewGameRecord& r) {
  for (int tile = 0; tile < ng::kTileCount; ++tile) {
    const ng::Rect place = ng::TileRect(tile);
    r.tiles[tile] = Child(window, kPictureTileClass, {place.x, place.y}, true, place.width,
                          place.height);
    SendMessageA(r.tiles[tile], NGM_SETBACKDROP, 0, AsParam(r.backdrop.get()));
  }
  for (int forward = 0; forward < 2; ++forward) {
    const ng::Rect place = ng::PageArrowRect(forward != 0);
    r.arrowStrips[forward] = ng::PageArrowStrip(r.backdrop.get(), place, forward != 0);
    r.arrows[forward] = Child(window, kCommandClass, {place.x, place.y}, false);
    if (r.arrowStrips[forward]) {
      SendMessageA(r.arrows[forward], MWM_SETIMAGE, 0, AsParam(r.arrowStrips[forward].get()));
    }
  }
  r.pictureName = Text(window, r, {ng::kPanelX, ng::kNameY}, " ", true);
}

void MakeSizeAndCountPanels(HWND window, NewGameRecord& r) {
  r.sliderImage.LoadById(ng::kSliderImage);
  r.larger = Anim(window, r.largerImage, ng::kSizeLargerImage, ng::kLargerPosition, 10, false);
  r.smaller = Anim(window, r.smallerImage, ng::kSizeSmallerImage, ng::kSmallerPosition, 10, false);
  r.sizeSlider = Slider(window, r.sliderImage.Dib(), 100);
  const ng::Rect picker = ng::kPickerRect;
  r.sizePicker = Child(window, kSizePickerClass, {picker.x, picker.y}, false, picker.width,
                       picker.height);
  SendMessageA(r.sizePicker, NGM_SETBACKDROP, 0, AsParam(r.backdrop.get()));

  r.countSlider = Slider(window, r.sliderImage.Dib(), 1);
  r.countPicker = Child(window, kCountPickerClass, {picker.x, picker.y}, false, picker.width,
                        picker.height);
  SendMessageA(r.countPicker, NGM_SETBACKDROP, 0, AsParam(r.backdrop.get()));
  const std::uint32_t labels[3] = {50, 60, 70};
  for (int line = 0; line < 3; ++line) {
    // A caption cannot be empty: a missing string shows as a blank.
    const std::string label = LocalizedString(labels[line], 200);
    r.countLabels[line] = Text(window, r, ng::CountLabelPosition(line),
                               label.empty() ? std::string(1, ' ') : label, false);
    r.countValues[line] = Text(window, r, ng::CountLabelPosition(line), "-", false);
  }
}

void MakeShapePanel(HWND window, NewGameRecord& r) {
  for (int s = 0; s < ng::kShapeCount; ++s) {
    r.shapeImages[s].LoadById(ng::kShapeOptionImage + static_cast<std::uint32_t>(s));
    r.shapes[s] = Check(window, r.shapeImages[s].Dib(), ng::ShapeOptionPosition(s),
                        ng::kFirstShapeIdentifier + s, false, s == 0);
  }
  r.cycler = Anim(window, r.cyclerImage, ng::kShapeCyclerImage, ng::kCyclerPosition, 6, false);
}

LRESULT OnCreate(HWND window, const CREATESTRUCTA* create) {
  auto* r = widget::CreateRecord<NewGameRecord>(window);
  const auto* request = static_cast<const OpenRequest*>(create->lpCreateParams);
  if (!r || !request || !r->background.LoadById(ng::kBackgroundImage)) return -1;
  r->names = request->names;
  r->page = ng::PicturePage{static_cast<int>(r->names.size()), 0};
  MakeBackdrop(*r, ng::kTabPicture);
  if (!r->backdrop) return -1;
  MakeFrameControls(window, *r);
  MakePicturePanel(window, *r);
  MakeSizeAndCountPanels(window, *r);
  MakeShapePanel(window, *r);

  PickerState& pickers = ThePickers();
  pickers.onRangesChanged = RedrawPickers;
  pickers.hookContext = window;
  FillTiles(*r);
  ShowArrows(*r, true);
  // The first picture that can be read is chosen, so that confirming at once starts a game.
  for (int picture = 0; picture < static_cast<int>(r->names.size()); ++picture) {
    if (SelectPicture(*r, picture)) break;
  }
  UpdateCountTexts(*r);
  return 0;
}

// ---- Events ------------------------------------------------------------------------------------

// The old panel slides up and the new background appears under it, drawn straight to the
// window so that the switch is seen whatever else is pending.
void RollPanel(HWND window, HDC captured) {
  widget::WindowDc dc(window);
  widget::MemorySurface frame(dc.get(), ng::kPanelWidth, ng::kPanelHeight);
  NewGameRecord* r = RecordOf<NewGameRecord>(window);
  if (!dc.get() || !frame.ok() || !r) return;
  for (const ng::RollStep& step : ng::RollSteps()) {
    BitBlt(frame.dc(), 0, 0, ng::kPanelWidth, step.height, captured, 0, step.oldTop, SRCCOPY);
    ImageDrawToContext(frame.dc(), 0, step.height, ng::kPanelWidth,
                       ng::kPanelHeight - step.height, r->backdrop.get(), ng::kPanelX,
                       ng::kPanelY + step.height, kRopSrcCopy);
    BitBlt(dc.get(), ng::kPanelX, ng::kPanelY, ng::kPanelWidth, ng::kPanelHeight, frame.dc(), 0,
           0, SRCCOPY);
    GdiFlush();
    Sleep(kRollStepMs);
  }
}

void SwitchTab(HWND window, NewGameRecord& r, int tab) {
  if (tab == r.tab || tab < 0 || tab >= ng::kTabCount) return;
  SendMessageA(r.tabs[r.tab], MWM_SETCHECK, 0, 0);
  // The roll below blocks painting: the old tab is seen to rise before it.
  UpdateWindow(r.tabs[r.tab]);
  MakeBackdrop(r, tab);
  // Every child that shows the backdrop gets the new one (the old block is gone).
  for (HWND child : r.tiles) SendMessageA(child, NGM_SETBACKDROP, 0, AsParam(r.backdrop.get()));
  SendMessageA(r.sizePicker, NGM_SETBACKDROP, 0, AsParam(r.backdrop.get()));
  SendMessageA(r.countPicker, NGM_SETBACKDROP, 0, AsParam(r.backdrop.get()));
  for (HWND caption : {r.pictureName, r.countLabels[0], r.countLabels[1], r.countLabels[2],
                       r.countValues[0], r.countValues[1], r.countValues[2]}) {
    SendMessageA(caption, MWM_SETIMAGE, 0, AsParam(r.backdrop.get()));
  }

  widget::WindowDc dc(window);
  widget::MemorySurface captured(dc.get(), ng::kPanelWidth, ng::kPanelHeight);
  if (captured.ok()) {
    BitBlt(captured.dc(), 0, 0, ng::kPanelWidth, ng::kPanelHeight, dc.get(), ng::kPanelX,
           ng::kPanelY, SRCCOPY);
  }
  ShowPanel(r, r.tab, false);
  if (captured.ok() && IsWindowVisible(window)) RollPanel(window, captured.dc());
  r.tab = tab;
  ShowPanel(r, tab, true);
  InvalidateRect(window, nullptr, FALSE);
}

void ChooseShape(NewGameRecord& r, int shape) {
  if (shape == r.shape) return;
  SendMessageA(r.shapes[r.shape], MWM_SETCHECK, 0, 0);
  r.shape = shape;
  SendMessageA(r.shapes[shape], MWM_SETCHECK, 0, 1);
  const bool hover = SendMessageA(r.cycler, anim::MWM_GETHOVER, 0, 0) != 0;
  SendMessageA(r.cycler, anim::MWM_SETFRAME, 0, shape + (hover ? ng::kShapeCount : 0));
}

void OnSizeChanged(NewGameRecord& r, int percentage) {
  SetSizePercentage(ThePickers(), percentage);
  UpdateCountSlider(r);
  UpdateCountTexts(r);
}

void OnSizeButton(NewGameRecord& r, int delta) {
  const int now = static_cast<int>(SendMessageA(r.sizeSlider, scroll::MWM_GETVALUE, 0, 0));
  const int next = ng::StepPercentage(now, delta);
  SendMessageA(r.sizeSlider, scroll::MWM_SETVALUE, 0, next);
  OnSizeChanged(r, next);
}

void OnConfirm(HWND window, NewGameRecord& r) {
  const PickerState& pickers = ThePickers();
  if (!PickerHasPicture(pickers) || !PuzzlePicture()) return;
  if (!ShowPuzzle(2, 2, ng::kDieBase + static_cast<std::uint32_t>(r.shape))) return;
  // ShowPuzzle puts the scale back to the fitting one: the player's choice goes in after it.
  EstadoPuzzle& puzzle = Puzzle();
  puzzle.scale = pickers.scale;
  puzzle.NC = pickers.columns;
  puzzle.NR = pickers.rows;
  CreateBoardWindow(MainWindow());
  DestroyWindow(window);
}

void OnPreview(HWND window, const NewGameRecord& r) {
  if (!PuzzlePicture() || r.selected < 0) return;
  OpenPictureViewer(window, PicturePath(r, r.selected).c_str());
}

int IndexOf(const HWND* windows, int count, HWND which) {
  for (int i = 0; i < count; ++i) {
    if (windows[i] == which) return i;
  }
  return -1;
}

void OnCyclerNotify(NewGameRecord& r, int code) {
  if (code == MWN_ENTER || code == MWN_LEAVE) {
    SendMessageA(r.cycler, anim::MWM_SETFRAME, 0,
                 r.shape + (code == MWN_ENTER ? ng::kShapeCount : 0));
  } else if (code == MWN_CLICKED) {
    ChooseShape(r, ng::NextShape(r.shape));
  }
}

void OnNotify(HWND window, NewGameRecord& r, int code, HWND from) {
  // The shape cycler shows shapes, not the open/close animation of the other animated buttons.
  if (from == r.cycler) {
    OnCyclerNotify(r, code);
    return;
  }
  ButtonFeedback(from, code);
  if (code != MWN_CLICKED) return;
  if (const int tab = IndexOf(r.tabs, ng::kTabCount, from); tab >= 0) {
    SwitchTab(window, r, tab);
  } else if (const int shape = IndexOf(r.shapes, ng::kShapeCount, from); shape >= 0) {
    ChooseShape(r, shape);
  } else if (const int tile = IndexOf(r.tiles, ng::kTileCount, from); tile >= 0) {
    if (tile == ng::OwnPictureTile(r.page)) {
      OnOwnPictureTile(window);
    } else {
      SelectPicture(r, ng::PictureOfTile(r.page, tile));
    }
  } else if (from == r.arrows[0] || from == r.arrows[1]) {
    TurnPage(r, from == r.arrows[1]);
  } else if (from == r.sizeSlider) {
    OnSizeChanged(r, static_cast<int>(SendMessageA(from, scroll::MWM_GETVALUE, 0, 0)));
  } else if (from == r.larger || from == r.smaller) {
    OnSizeButton(r, from == r.larger ? ng::kSizeButtonStep : -ng::kSizeButtonStep);
  } else if (from == r.countSlider) {
    SetCountPosition(ThePickers(),
                     static_cast<int>(SendMessageA(from, scroll::MWM_GETVALUE, 0, 0)));
    // Only a change of scale calls the pickers' redraw hook; a new grid is drawn here.
    InvalidateRect(r.countPicker, nullptr, FALSE);
    UpdateCountTexts(r);
  } else if (from == r.help) {
    OpenHelp();
  } else if (from == r.preview) {
    OnPreview(window, r);
  } else if (from == r.confirm) {
    OnConfirm(window, r);
  } else if (from == r.cancel) {
    DestroyWindow(window);
  }
}

void OnPaint(HWND window, HDC printDc) {
  const NewGameRecord* r = RecordOf<NewGameRecord>(window);
  widget::PaintWindow(window, printDc, [&](HDC dc, const RECT& area) {
    ImageFill(dc, area, r ? r->backdrop.get() : nullptr, kRopSrcCopy);
  });
}

void OnDestroy(HWND window) {
  PickerState& pickers = ThePickers();
  if (pickers.hookContext == window) {
    pickers.onRangesChanged = nullptr;
    pickers.hookContext = nullptr;
  }
  // The children are already gone; the pictures they borrowed can go with the record.
  widget::DestroyRecord<NewGameRecord>(window);
  EnableOwnerOnClose(window);
}

// Escape closes and Enter confirms, as in every dialog of the system.
bool OnKey(HWND window, WPARAM key) {
  NewGameRecord* r = RecordOf<NewGameRecord>(window);
  if (key == VK_ESCAPE) {
    DestroyWindow(window);
    return true;
  }
  if (key == VK_RETURN && r) {
    OnConfirm(window, *r);
    return true;
  }
  return false;
}

LRESULT CALLBACK NewGameProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  NewGameRecord* r = RecordOf<NewGameRecord>(window);
  switch (message) {
    case WM_CREATE:
      return OnCreate(window, reinterpret_cast<const CREATESTRUCTA*>(lParam));
    case WM_DESTROY:
      OnDestroy(window);
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT:
      OnPaint(window, nullptr);
      return 0;
    case WM_PRINTCLIENT:
      OnPaint(window, reinterpret_cast<HDC>(wParam));
      return 0;
    case WM_QUERYNEWPALETTE:
      RedrawForPalette(window);
      return 0;
    case WM_PALETTECHANGED:
      RedrawForPalette(window, reinterpret_cast<HWND>(wParam));
      return 0;
    case WM_KEYDOWN:
      OnKey(window, wParam);
      return 0;
    case WM_CLOSE:
      DestroyWindow(window);
      return 0;
    case MWM_NOTIFY:
      if (r) OnNotify(window, *r, static_cast<int>(wParam), reinterpret_cast<HWND>(lParam));
      return 0;
    default:
      return DefWindowProcA(window, message, wParam, lParam);
  }
}

}  // namespace

bool RegisterNewGameClasses(HINSTANCE instance) {
  return RegisterCountPickerClass(instance) && RegisterSizePickerClass(instance) &&
         RegisterPictureTileClass(instance) &&
         RegisterScreenClass(instance, kNewGameClass, NewGameProc, CS_OWNDC);
}

HWND OpenNewGameScreen(HWND mainWindow) {
  OpenRequest request;
  request.names = ListPictures();
  if (!QV_CHECK(static_cast<int>(request.names.size()) >= ng::kTileCount,
                "este codigo no soporta menos imagenes que el numero declarado en "
                "NUM_PREVIEW_FS")) {
    return nullptr;
  }
  ControlDC background;
  if (!background.LoadById(ng::kBackgroundImage)) return nullptr;
  HideAllBoxesBut(nullptr);
  return OpenCentredScreen(kNewGameClass, kScreenStyle, background.Width(), background.Height(),
                           mainWindow, &request);
}

}  // namespace qv
