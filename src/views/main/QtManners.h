#pragma once

/// What Qt is told through the environment, before there is an application. What stands there
/// already is kept. [main]
namespace QtManners {

void settle();

}  // namespace QtManners
