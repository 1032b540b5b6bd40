#pragma once

/// The name of a file format for the user, by the imaging service's number (struct_file_information::Format);
/// empty for one that has no name.
const char* FileFormatName(int code);
