/* Marks what libProviderHelper exports; everything else is hidden. */
#ifndef PROVIDER_HELPER_EXPORT_H
#define PROVIDER_HELPER_EXPORT_H

#define PH_EXPORT __attribute__((visibility("default")))

#endif
