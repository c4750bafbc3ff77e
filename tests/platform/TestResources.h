#pragma once

/* Read by the tests and by the resource compiler alike: plain numbers only. */

#define IDR_SAMPLE 301
#define IDR_BROKEN 302
#define IDR_MISSING 303 /* in no resource file */

#define IDD_SAMPLE 401
#define IDD_MISSING 402 /* in no resource file */

#define IDC_SAMPLE_EDIT 501
