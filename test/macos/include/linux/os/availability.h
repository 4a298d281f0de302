// Availability is checked by the cross build; here everything is available.
#pragma once

#define API_AVAILABLE(...)
#define API_DEPRECATED(...)
#define API_UNAVAILABLE(...)
