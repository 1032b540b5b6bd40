#pragma once

/// A place in a list that is walked with GetFirst... and GetNext...; null behind the last entry. It stays
/// good while its own entry is in the list, whatever happens to others.
struct ListPlace;
using POSITION = ListPlace*;
