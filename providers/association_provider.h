// The association provider, and what the instance provider answers of association classes and of
// CIM_RegisteredProfile, which the library does not know.
#pragma once

#include "associations/engine.h"

#include <cmpift.h>

extern CMPIAssociationMIFT associationFunctions;

bool isAssociationOrProfile(const CMPIObjectPath* ref);
// Of those. The result is closed.
CMPIStatus enumerateAssociations(const associations::Request& request, associations::Want want);
CMPIStatus getAssociation(const associations::Request& request);
// They follow from their elements: nobody else changes them. `refusal` says what cannot be done.
CMPIStatus refuseChange(const CMPIBroker* broker, const char* refusal);
