/* What the BMC writes to the event pipe for every event that is to be delivered: the process that matches
 * events with the filters has chosen the destination. */
#ifndef PLATFORM_SEL_EVENT_MESSAGE_H
#define PLATFORM_SEL_EVENT_MESSAGE_H

#include <assert.h>
#include <stdint.h>

#include "platform/cim_sel.h"

/* A named pipe; the library creates it and reads from it. Messages shorter than PIPE_BUF arrive whole. */
#define SEL_EVENT_PIPE "/tmp/SELEvent_fifo"

enum { SEL_EVENT_TO_MAIL = 1, SEL_EVENT_TO_CIMXML = 2 };

/* 28 bytes, little-endian. */
#pragma pack(push, 1)
typedef struct {
    uint8_t record[CIM_SEL_RECORD_SIZE]; /* as in the SEL, see cim_sel.h */
    int32_t
        destination; /* mail: selector of the LAN alert destination; CIM-XML: n of destination "CIMXML-n" */
    int32_t channel; /* LAN channel of the alert destination */
    int32_t kind;    /* SEL_EVENT_TO_…; messages of other kinds are dropped */
} SelEventMessage;
#pragma pack(pop)
static_assert(sizeof(SelEventMessage) == 28, "layout shared with the platform");

#endif
