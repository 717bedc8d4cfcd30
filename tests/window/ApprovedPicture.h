#pragma once

#include <gtest/gtest.h>

#include <QImage>

/// Whether a picture looks like the approved one of that name in docs/screens: small squares may
/// differ by a little in their mean colour, as the edges of letters do between versions of a font
/// library. What does not is left beside the test program as NAME.png. With OMBRIX_APPROVE set in
/// the environment the picture becomes the approved one; look at it first.
testing::AssertionResult looksApproved(const QImage& picture, const std::string& name);
