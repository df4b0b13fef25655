// Message numbers and notification codes of the widget library, shared by widgets and screens.
#pragma once

namespace qv {

// Every widget message lies in WM_USER + 300 ... WM_USER + 400. A widget answers each of them
// itself; a number of the range that the widget does not define answers 1.
constexpr unsigned kWidgetMessageFirst = 1324;
constexpr unsigned kWidgetMessageLast = 1424;
constexpr bool IsWidgetMessage(unsigned message) {
  return message >= kWidgetMessageFirst && message <= kWidgetMessageLast;
}

// Sent (never posted) by a widget to its parent: wParam a code, lParam the widget's window.
constexpr unsigned MWM_NOTIFY = 1324;
constexpr int MWN_PRESSED = 0;
constexpr int MWN_RELEASED = 1;
constexpr int MWN_ENTER = 2;
constexpr int MWN_LEAVE = 3;
constexpr int MWN_CLICKED = 4;
constexpr int MWN_CHANGED = 5;

// A character whose target is a child window, offered first to that child's parent by the
// message loop; a non-zero answer consumes it.
constexpr unsigned UM_CHILDCHAR = 1524;

// The four messages that every widget class has, with the same numbers.
constexpr unsigned MWM_GETENABLED = 1324;
constexpr unsigned MWM_SETENABLED = 1325;
constexpr unsigned MWM_GETIMAGE = 1326;
constexpr unsigned MWM_SETIMAGE = 1327;

// CMWCOMMAND, CMWBOXSCOMMAND and CMWCHECK.
constexpr unsigned MWM_GETDISABLEDFRAME = 1334;
constexpr unsigned MWM_SETDISABLEDFRAME = 1335;
// CMWCHECK only.
constexpr unsigned MWM_GETCHECK = 1336;
constexpr unsigned MWM_SETCHECK = 1337;
constexpr unsigned MWM_GETRADIO = 1338;
constexpr unsigned MWM_SETRADIO = 1339;

// The other widgets reuse the numbers from 1334 on with meanings of their own, so their names
// live in one namespace per class.
namespace anim {
constexpr unsigned MWM_GETBACKGROUND = 1334;
constexpr unsigned MWM_SETBACKGROUND = 1335;
constexpr unsigned MWM_GETTRANSPARENT = 1336;
constexpr unsigned MWM_SETTRANSPARENT = 1337;
constexpr unsigned MWM_GETFRAME = 1338;
constexpr unsigned MWM_SETFRAME = 1339;
constexpr unsigned MWM_GETROWS = 1340;
constexpr unsigned MWM_SETROWS = 1341;
constexpr unsigned MWM_GETCOLUMNS = 1342;
constexpr unsigned MWM_SETCOLUMNS = 1343;
constexpr unsigned MWM_GETINTERVAL = 1344;
constexpr unsigned MWM_SETINTERVAL = 1345;
constexpr unsigned MWM_GETRUNNING = 1346;
constexpr unsigned MWM_SETRUNNING = 1347;
constexpr unsigned MWM_GETUSERVALUE = 1348;
constexpr unsigned MWM_SETUSERVALUE = 1349;
constexpr unsigned MWM_GETHOVER = 1350;
}  // namespace anim

namespace text {
constexpr unsigned MWM_GETSHADOW = 1334;
constexpr unsigned MWM_SETSHADOW = 1335;
constexpr unsigned MWM_GETSHADOWCOLOUR = 1336;
constexpr unsigned MWM_SETSHADOWCOLOUR = 1337;
constexpr unsigned MWM_GETTEXTCOLOUR = 1338;
constexpr unsigned MWM_SETTEXTCOLOUR = 1339;
constexpr unsigned MWM_GETDISABLEDCOLOUR = 1340;
constexpr unsigned MWM_SETDISABLEDCOLOUR = 1341;
constexpr unsigned MWM_GETSHADOWOFFSET = 1342;
constexpr unsigned MWM_SETSHADOWOFFSET = 1343;
constexpr unsigned MWM_GETFONTHEIGHT = 1344;
constexpr unsigned MWM_SETFONTHEIGHT = 1345;
constexpr unsigned MWM_GETNORMALWEIGHT = 1346;
constexpr unsigned MWM_SETNORMALWEIGHT = 1347;
constexpr unsigned MWM_GETHOVERWEIGHT = 1348;
constexpr unsigned MWM_SETHOVERWEIGHT = 1349;
constexpr unsigned MWM_GETTEXT = 1350;
constexpr unsigned MWM_SETTEXT = 1351;
constexpr unsigned MWM_SETFACENAME = 1352;
}  // namespace text

namespace scroll {
constexpr unsigned MWM_GETPARTSIZE1 = 1334;
constexpr unsigned MWM_SETPARTSIZE1 = 1335;
constexpr unsigned MWM_GETPARTSIZE2 = 1336;
constexpr unsigned MWM_SETPARTSIZE2 = 1337;
constexpr unsigned MWM_GETPARTSIZE3 = 1338;
constexpr unsigned MWM_SETPARTSIZE3 = 1339;
constexpr unsigned MWM_GETMAXIMUM = 1340;
constexpr unsigned MWM_SETMAXIMUM = 1341;
constexpr unsigned MWM_GETMINIMUM = 1342;
constexpr unsigned MWM_SETMINIMUM = 1343;
constexpr unsigned MWM_GETVALUE = 1344;
constexpr unsigned MWM_SETVALUE = 1345;
constexpr unsigned MWM_GETSTEP = 1346;
constexpr unsigned MWM_SETSTEP = 1347;
constexpr unsigned MWM_GETDRAGTHRESHOLD = 1348;
constexpr unsigned MWM_SETDRAGTHRESHOLD = 1349;
constexpr unsigned MWM_GETDISABLEDFRAME = 1350;
constexpr unsigned MWM_SETDISABLEDFRAME = 1351;
constexpr unsigned MWM_GETDELAY = 1352;
constexpr unsigned MWM_SETDELAY = 1353;
constexpr unsigned MWM_GETPERIOD = 1354;
constexpr unsigned MWM_SETPERIOD = 1355;

// The scroll's own notification codes beside MWN_PRESSED ... MWN_CLICKED (4: the value changed).
constexpr int EnterPartCode(int part) { return 4 + part; }   // 5, 6, 7
constexpr int LeavePartCode(int part) { return 7 + part; }   // 8, 9, 10
constexpr int PressPartCode(int part) { return 10 + part; }  // 11, 12, 13
constexpr int ReleasePartCode(int part) { return 13 + part; }  // 14, 15, 16
}  // namespace scroll

namespace slide {
constexpr unsigned MWM_GETKNOB = 1326;  // the knob strip (MWM_GETIMAGE)
constexpr unsigned MWM_SETKNOB = 1327;  // (MWM_SETIMAGE)
constexpr unsigned MWM_GETBACKGROUND = 1334;
constexpr unsigned MWM_SETBACKGROUND = 1335;
constexpr unsigned MWM_GETFRAME = 1336;
constexpr unsigned MWM_SETFRAME = 1337;
constexpr unsigned MWM_GETROWS = 1338;
constexpr unsigned MWM_SETROWS = 1339;
constexpr unsigned MWM_GETCOLUMNS = 1340;
constexpr unsigned MWM_SETCOLUMNS = 1341;
constexpr unsigned MWM_GETMAXIMUM = 1342;
constexpr unsigned MWM_SETMAXIMUM = 1343;
constexpr unsigned MWM_GETMINIMUM = 1344;
constexpr unsigned MWM_SETMINIMUM = 1345;
constexpr unsigned MWM_GETVALUE = 1346;
constexpr unsigned MWM_SETVALUE = 1347;
constexpr unsigned MWM_GETSTEP = 1348;
constexpr unsigned MWM_SETSTEP = 1349;
constexpr unsigned MWM_GETSTART = 1350;
constexpr unsigned MWM_SETSTART = 1351;
constexpr unsigned MWM_GETEND = 1352;
constexpr unsigned MWM_SETEND = 1353;
}  // namespace slide

// The interface sounds, WAVE resources of the module: hover with MWN_ENTER, click with
// MWN_CLICKED.
constexpr int kHoverSound = 242;
constexpr int kClickSound = 243;

// Timer identifiers of the widgets.
constexpr int kHoverTimer = 1;
constexpr int kHoverPollMs = 120;

}  // namespace qv
