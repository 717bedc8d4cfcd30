#include "audiofiles/FileStatus.h"

#include <cerrno>

#include "audiofiles/AudioFile.h"

OSStatus statusOfErrno(int error) {
    switch (error) {
        case ENOENT:
        case ENOTDIR:
            return kAudioFileFileNotFoundError;
        case EACCES:
        case EPERM:
            return kAudioFilePermissionsError;
        case EROFS:
            return kAudioFileReadOnlyError;
        case EEXIST:
            return kAudioFileExistsError;
        case EISDIR:
            return kAudioFileIsFolderError;
        case ENXIO:
        case ENODEV:
            return kAudioFileNotRegularError;
        case ENOSPC:
        case EDQUOT:
            return kAudioFileDiskFullError;
        case EFBIG:
            return kAudioFileTooLargeError;
        case ENAMETOOLONG:
            return kAudioFileNameTooLongError;
        default:
            return kAudioFileUnspecifiedError;
    }
}
