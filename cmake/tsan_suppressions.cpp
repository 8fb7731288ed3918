// Libraries that are built without ThreadSanitizer synchronise in ways that it cannot see. What they do to memory
// inside themselves is not its business; what our own code does is.
extern "C" const char* __tsan_default_suppressions();

extern "C" const char* __tsan_default_suppressions() {
  return "called_from_lib:libQt6Core.so\n"
         "called_from_lib:libQt6DBus.so\n"
         "called_from_lib:libdbus-1.so\n"
         "called_from_lib:libglib-2.0.so\n";
}
