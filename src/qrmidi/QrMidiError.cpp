#include "QrMidiError.h"

#include "log/Log.h"

bool logFailure(const char* action, OSStatus status) {
    if (status == noErr)
        return true;
    const long code = status;
    Log::line("Error (%s): %ld:Error Domain=NSMachErrorDomain Code=%ld", action, code, code);
    return false;
}
