#pragma once

/// Name of a paper (dmFormName) of the record's width and length, to the tenth of a millimetre, that is
/// printed on up to its edges. For files; a queue's printer may cut the edges off.
inline constexpr char kFormBorderless[] = "Borderless";
