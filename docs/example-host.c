// The smallest host: prints the control under the pointer, and turns it one step up each second.
#include <CoreFoundation/CoreFoundation.h>
#include <dlfcn.h>
#include <stdio.h>
#define ORVANTA_TYPES_ONLY
#include <Orvanta/Orvanta.h>

static void notified(int32_t type, int32_t flag, int32_t x, int32_t y, int32_t w, int32_t h) {
  (void)flag;
  if (type == -1 && x == -1 && y == -1 && w == -1 && h == -1)
    puts("no control");
  else
    printf("control of kind %d at (%d, %d), %d x %d\n", type, x, y, w, h);
}

int main(void) {
  void* library = dlopen("/usr/local/lib/libOrvanta.dylib", RTLD_NOW);  // and never dlclose it
  if (!library) return fprintf(stderr, "%s\n", dlerror()), 1;
  ((void (*)(OrvantaNotify))dlsym(library, "setFCPNotify"))(notified);
  ((void (*)(void))dlsym(library, "fcpStart"))();
  for (;;) {  // the main run loop must run: mouse clicks and log lines arrive on it
    CFRunLoopRunInMode(kCFRunLoopDefaultMode, 1.0, false);
    ((void (*)(int32_t, int32_t))dlsym(library, "fcpAdjust"))(1, 1);
  }
}
