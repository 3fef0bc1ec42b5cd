// The text that shows the rights of a remote file. Any thread.
#pragma once

#include "support/text.h"

/// The text of three digits: "0755" when `numeric`, else `first` and a mask. The letters of the mask go by how great a
/// digit is and not by its bits: 5 shows as "r--".
void PermissionTextOfValues(char (&out)[kTextSize], unsigned char owner, unsigned char group, unsigned char others,
                            char first, bool numeric);
