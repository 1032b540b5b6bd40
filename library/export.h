#pragma once

// Marks what Tessarel12 offers to a host; everything else stays hidden.
#define TESSAREL_API __attribute__((visibility("default")))
