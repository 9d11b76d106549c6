// The table that the SOAP runtime reads at the birth of a context. Each proxy then installs its own.
#include "PSVWSSoapBinding.nsmap"
