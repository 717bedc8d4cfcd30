#pragma once

/// What an envelope starts and stops. [any thread]
class Triggerable {
  public:
    virtual void trigger() noexcept = 0;
    virtual void untrigger() noexcept = 0;

  protected:
    ~Triggerable() = default;
};
