// Shared objects built from static archives need one source of their own.
