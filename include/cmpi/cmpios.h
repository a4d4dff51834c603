/* CMPI: what the headers need from the operating system. */
#ifndef CMPIOS_H
#define CMPIOS_H

#include <time.h>

struct timespec; /* strict C hides it in <time.h> */

#endif
