// Libraries that were built without the sanitizers synchronise in ways that these cannot see, and keep memory until
// the process ends. Only our own code is checked.
extern "C" const char* __tsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions();

extern "C" const char* __tsan_default_suppressions() {
  return "called_from_lib:libQt6Core.so\n"
         "called_from_lib:libQt6DBus.so\n"
         "called_from_lib:libQt6Gui.so\n"
         "called_from_lib:libQt6Widgets.so\n"
         "called_from_lib:libQt6XcbQpa.so\n"
         "called_from_lib:libdbus-1.so\n"
         "called_from_lib:libglib-2.0.so\n"
         "called_from_lib:libxcb.so\n"
         "mutex:libX11.so\n"
         "race:QObject::disconnect\n"  // Qt's bus thread releases an object that a test exported
         "race:tzset_internal\n";      // the C library's own lock around its time zone
}

extern "C" const char* __lsan_default_suppressions() { return "leak:libdbus-1\n"; }
