/* A plugin for QEMU's user emulation. It counts the instructions that the program executes, and writes the count to
 * the file named by the environment variable INSTRUCTIONS. Debian has no header for plugins, so the few declarations
 * that it needs stand here (version 1 of the interface). */
#include <inttypes.h>
#include <stdio.h>
#include <stdlib.h>

struct qemu_info;
struct qemu_plugin_tb;
enum { kAddU64 = 0 };

size_t qemu_plugin_tb_n_insns(const struct qemu_plugin_tb* tb);
void qemu_plugin_register_vcpu_tb_trans_cb(uint64_t id, void (*translated)(uint64_t, struct qemu_plugin_tb*));
void qemu_plugin_register_vcpu_tb_exec_inline(struct qemu_plugin_tb* tb, int operation, void* counter,
                                              uint64_t amount);
void qemu_plugin_register_atexit_cb(uint64_t id, void (*ended)(uint64_t, void*), void* context);

__attribute__((visibility("default"))) int qemu_plugin_version = 1;

static uint64_t count;

static void OnBlock(uint64_t id, struct qemu_plugin_tb* tb) {
  (void)id;
  qemu_plugin_register_vcpu_tb_exec_inline(tb, kAddU64, &count, qemu_plugin_tb_n_insns(tb));
}

static void OnEnd(uint64_t id, void* context) {
  (void)id;
  FILE* file = fopen((const char*)context, "w");
  if (file == NULL) return;
  fprintf(file, "%" PRIu64 "\n", count);
  fclose(file);
}

__attribute__((visibility("default"))) int qemu_plugin_install(uint64_t id, const struct qemu_info* info, int argc,
                                                               char** argv) {
  (void)info;
  (void)argc;
  (void)argv;
  char* name = getenv("INSTRUCTIONS");
  if (name == NULL) return -1;
  qemu_plugin_register_vcpu_tb_trans_cb(id, OnBlock);
  qemu_plugin_register_atexit_cb(id, OnEnd, name);
  return 0;
}
