/* CIM hooks: Serial over LAN (SOL), which redirects a serial port of the host. For the common rules see cim_hooks.h. */
#ifndef PLATFORM_CIM_SOL_H
#define PLATFORM_CIM_SOL_H

#include <stdint.h>

#include "platform/cim_session.h"

#ifdef __cplusplus
extern "C" {
#endif

/* SOL as a LAN channel has it. What the BMC does not tell is 0. */
typedef struct {
    uint8_t isSupported; /* 0: the BMC has no SOL on this channel, and the others are 0 */
    uint8_t isEnabled;   /* 1: it can be activated */
    uint8_t privilege;   /* the least that activates it: 2 user, 3 operator, 4 administrator, 5 OEM */
    uint8_t forcesEncryption;
    uint8_t forcesAuthentication;
    uint16_t port;    /* UDP */
    uint32_t bitRate; /* bit/s of the serial port; 0 also where it is that of the serial channel */
} CIM_SOLConfig;

/* Reads the parameters 1, 2, 6 and 8 of the channel (Get SOL Configuration Parameters, IPMI 2.0 26.3; network function
 * 0Ch, command 22h). A BMC without the command, and a channel without SOL, are a success. */
int CIM_GetSOLConfig(IPMI20_SESSION_T* session, uint8_t channel, CIM_SOLConfig* config, int timeout);

/* Writes parameter 1 (Set SOL Configuration Parameters, 26.2; command 21h): SOL can be activated on this channel (1), or
 * cannot (0). What is active stays so. */
int CIM_SetSOLEnable(IPMI20_SESSION_T* session, uint8_t channel, uint8_t enable, int timeout);

enum { CIM_MAX_SOL_INSTANCES = 15 };

/* SOL can be activated several times, on whatever channels. */
typedef struct {
    uint8_t isSupported; /* 0: the BMC does not tell, and the others are 0 */
    uint8_t capacity;    /* how many instances can be active at a time, 1 to 15 */
    uint16_t active;     /* bit n: instance n + 1 is */
} CIM_SOLActivation;

/* Asks for the SOL payload (Get Payload Activation Status, 24.4; network function 06h, command 4Ah). A BMC without the
 * command, or the payload, is a success. */
int CIM_GetSOLActivation(IPMI20_SESSION_T* session, CIM_SOLActivation* activation, int timeout);

typedef struct {
    uint32_t sessionId; /* that has it active, 0 for none */
    uint8_t serialPort; /* of the host, from 1; 0: the BMC has one only, or does not tell */
} CIM_SOLInstance;

/* Reads an instance, from 1 to the capacity (Get Payload Instance Info, 24.5; command 4Bh). A BMC without the command
 * fails. */
int CIM_GetSOLInstance(IPMI20_SESSION_T* session, uint8_t instance, CIM_SOLInstance* sol, int timeout);

#ifdef __cplusplus
}
#endif

#endif
