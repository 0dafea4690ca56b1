// Holds the precompiled header that every test program reuses.
