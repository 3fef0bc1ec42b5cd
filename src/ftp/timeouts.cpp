#include "ftp/timeouts.h"

FtpTimeouts gFtpTimeouts;
