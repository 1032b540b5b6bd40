#include "platform/resources/resource_tables.h"

// The decoders are built without the folders that hold texts, so none is translated.
int LoadStringA(HINSTANCE, UINT, char*, int) {
  return 0;
}
