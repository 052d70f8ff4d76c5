#pragma once
// How a call of a title-control object ended when it ended without an exception but did not
// simply succeed. Such results are not errors of the system: the script sees no error text, only
// the host's own code (in COM E_INVALIDARG and E_NOINTERFACE), so the core hands them back as
// values and leaves the mapping to the adapter of the host.
enum class CCallResult {
  Ok,
  // The object lacks what the member works on (a channel object without its native channel).
  InvalidArgument,
  // An object passed by the script is not the kind of object of this module that was asked for.
  NoInterface,
};
