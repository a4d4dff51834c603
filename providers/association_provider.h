// The association provider, and what the instance provider answers of association classes and of
// CIM_RegisteredProfile, which the library does not know.
#pragma once

#include "associations/engine.h"

#include <cmpift.h>

extern CMPIAssociationMIFT associationFunctions;

bool isAssociationOrProfile(const CMPIObjectPath* ref);
// Answer requests on those. The result is closed.
CMPIStatus enumerateAssociations(const associations::Request& request, associations::Want want);
CMPIStatus getAssociation(const associations::Request& request);
// Refuses to change them, as they follow from their elements. `refusal` says what cannot be done.
CMPIStatus refuseChange(const CMPIBroker* broker, const char* refusal);
