// Libraries that are built without ThreadSanitizer synchronise in ways that it cannot see. What they do to memory
// inside themselves is not its business; what our own code does is. The C library guards its time zone by a lock
// that it cannot see either.
extern "C" const char* __tsan_default_suppressions();

extern "C" const char* __tsan_default_suppressions() {
  return "called_from_lib:libQt6Core.so\n"
         "called_from_lib:libQt6DBus.so\n"
         "called_from_lib:libQt6Gui.so\n"
         "called_from_lib:libQt6Widgets.so\n"
         "called_from_lib:libQt6XcbQpa.so\n"
         "called_from_lib:libglib-2.0.so\n"
         "called_from_lib:libdbus-1.so\n"
         "called_from_lib:libxcb.so\n"
         "mutex:libX11.so.6\n"
         "race:tzset_internal\n";
}
