// Calls of the C interface that take an entity or a project as a whole; any object may stand for either.
#pragma once

#include "c_client.h"

namespace tarn::fuzz {

class ProjectCalls : public Client {
 protected:
  using Client::Client;

  void entity();
  void uses();
  void kinds();
  void records();
  void exchange();
  void gbxml();
  void results();
  void other_project();
  void check();
  void chiller();

 private:
  bool has_checked_ = false, has_other_ = false;
};

}  // namespace tarn::fuzz
