#pragma once

/// What Qt has to say goes to the log, and a display that cannot be had ends the program with one
/// line for the user instead of Qt's abort.
namespace QtMessages {

/// Before the application is made: also has Qt try whatever display server there is.
void listen();
/// The application has its display; a fatal message is a fault of the program from here on.
void started();

}  // namespace QtMessages
