# Everything comes from the distribution. Where something is missing, say which package brings it.

function(quorvane_require found what package)
  if(NOT ${found})
    message(FATAL_ERROR
      "Quorvane needs ${what}, which was not found here.\n"
      "On Debian:  sudo apt install ${package}\n"
      "(./run and ./test install everything themselves.)")
  endif()
endfunction()

find_package(Qt6 6.4 QUIET COMPONENTS Core DBus Widgets)
quorvane_require(Qt6_FOUND "Qt 6.4 or newer (Core, D-Bus and Widgets)" "qt6-base-dev")

find_package(Qt6UiTools 6.4 QUIET)
quorvane_require(Qt6UiTools_FOUND "Qt's loader of window layouts" "qt6-tools-dev libqt6opengl6-dev")

find_package(PkgConfig QUIET)
quorvane_require(PKG_CONFIG_FOUND "pkg-config" "pkg-config")

pkg_check_modules(UDEV QUIET IMPORTED_TARGET libudev)
quorvane_require(UDEV_FOUND "libudev" "libudev-dev")

pkg_check_modules(XCB QUIET IMPORTED_TARGET xcb)
quorvane_require(XCB_FOUND "libxcb (for what the windows ask of the window manager)" "libxcb1-dev")

pkg_check_modules(XCB_RES QUIET IMPORTED_TARGET xcb-res)
quorvane_require(XCB_RES_FOUND "libxcb-res (for which process a window belongs to)" "libxcb-res0-dev")

pkg_check_modules(SYSTEMD QUIET IMPORTED_TARGET libsystemd)
quorvane_require(SYSTEMD_FOUND "libsystemd (for the journal)" "libsystemd-dev")

if(QUORVANE_TESTS AND NOT QUORVANE_TESTS STREQUAL "SYSTEM")
  find_package(GTest QUIET)
  quorvane_require(GTest_FOUND "GoogleTest and GoogleMock" "libgtest-dev libgmock-dev")
  find_package(Qt6Test 6.4 QUIET)
  quorvane_require(Qt6Test_FOUND "Qt's test module (keys and clicks)" "qt6-base-dev")
endif()
if(QUORVANE_TESTS)
  find_program(QUORVANE_PYTHON /usr/bin/python3)
  quorvane_require(QUORVANE_PYTHON "Python 3 of the distribution" "python3")
endif()
