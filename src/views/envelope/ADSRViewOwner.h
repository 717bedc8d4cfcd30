#pragma once

class ADSRView;

/// Who wants to know what is done to an envelope.
class ADSRViewOwner {
  public:
    virtual ~ADSRViewOwner() = default;
    /// A drag or a key has changed one of the view's four values. [main]
    virtual void adsrViewUpdated(ADSRView&) {}
};
