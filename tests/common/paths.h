// Where this build has what tests open by path. Variables, as definitions on the compiler's command line would be other
// ones in every checkout, and the compiler cache would know none of the tests again.
#pragma once

namespace paths {

extern const char* const phctl;
extern const char* const library; // libProviderHelper.so
extern const char* const libraries;
extern const char* const providerModule;
extern const char* const interopLibrary;
extern const char* const eventTexts;
extern const char* const sampleServer;
extern const char* const schemaFiles;
extern const char* const moduleRegistration;
extern const char* const documents;
extern const char* const deployCheck;
extern const char* const scripts;

// Stand-ins of the tests.
extern const char* const brokerTestProvider;
extern const char* const jobProvider;
extern const char* const standInInterop;
extern const char* const standInEventTexts;
extern const char* const standInEventTextsWithoutSeverity;
extern const char* const stubPlatform;
extern const char* const badPlatform;

} // namespace paths
