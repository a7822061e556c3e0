/* A module for the OpenIPMI simulator: the management module of an enclosure, as docs/ipmi.md
   describes it.

   Loaded with `loadlib "<this>" "<folder>"`. The lines that it is given go to <folder>/lines, one
   each; what it answers stands in <folder>/behaviour: "completion NUMBER" or "output LENGTH";
   without the file it is content. */

#include <OpenIPMI/mcserv.h>
#include <OpenIPMI/msg.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>

enum { manufacturer = 32473, applicationFunction = 0x06, getSystemGuid = 0x37 };
enum { beginCommand = 0x40, argumentCommand, executeCommand, readCommand, endCommand };
enum { executionNumber = 1, standardOutput = 1, answerSize = 28, longestLine = 8000 };

static char folder[512];
static char line[longestLine];
static unsigned int outputLength;

static void fail(unsigned char* answer, unsigned int* length, unsigned char code) {
    answer[0] = code;
    *length = 1;
}

static unsigned int number(const unsigned char* bytes, unsigned int size) {
    unsigned int value = 0;
    for (unsigned int i = 0; i < size; ++i) value |= (unsigned int)bytes[i] << (8 * i);
    return value;
}

static void put(unsigned char* bytes, unsigned int value) {
    for (unsigned int i = 0; i < 4; ++i) bytes[i] = (unsigned char)(value >> (8 * i));
}

static FILE* openFile(const char* name, const char* mode) {
    char path[600];
    snprintf(path, sizeof path, "%s/%s", folder, name);
    return fopen(path, mode);
}

/* The completion code; sets the length of the output. */
static unsigned char behave(void) {
    char word[32] = "";
    unsigned int value = 0;
    outputLength = 2;
    FILE* const file = openFile("behaviour", "r");
    if (file == NULL) return 0;
    const int count = fscanf(file, "%31s %u", word, &value);
    fclose(file);
    if (count != 2) return 0;
    if (strcmp(word, "output") == 0) outputLength = value;
    return strcmp(word, "completion") == 0 ? (unsigned char)value : 0;
}

static void execute(const unsigned char* data, unsigned char* answer, unsigned int* length) {
    const unsigned int size = number(data + 1, 2);
    FILE* const file = openFile("lines", "a");
    if (file != NULL) {
        fprintf(file, "%.*s\n", (int)(size < longestLine ? size : longestLine - 1), line);
        fclose(file);
    }
    answer[1] = behave();
    put(answer + 2, outputLength);
    put(answer + 6, 0);
    *length = 10;
}

static void take(const unsigned char* data, unsigned int size, unsigned char* answer,
                 unsigned int* length) {
    const unsigned int offset = number(data + 1, 2);
    if (offset + (size - 3) >= longestLine) return fail(answer, length, 0xC8);
    memcpy(line + offset, data + 3, size - 3);
    line[offset + (size - 3)] = '\0';
    *length = 1;
}

static void giveOutput(const unsigned char* data, unsigned char* answer, unsigned int* length) {
    const unsigned int offset = number(data + 2, 4);
    if (data[1] != standardOutput || offset >= outputLength) return fail(answer, length, 0xC9);
    const unsigned int left = outputLength - offset;
    const unsigned int count = left < answerSize ? left : answerSize;
    memset(answer + 1, 'o', count);
    *length = 1 + count;
}

/* The simulator takes the enterprise number off requests and puts it before answers. */
static void enclosure(lmc_data_t* mc, msg_t* message, unsigned char* answer, unsigned int* length,
                      void* data) {
    (void)mc;
    (void)data;
    answer[0] = 0;
    *length = 1;
    const int isKnown =
        message->cmd == beginCommand || (message->len > 0 && message->data[0] == executionNumber);
    if (!isKnown) return fail(answer, length, 0xCC);
    if (message->cmd == beginCommand) {
        line[0] = '\0';
        answer[1] = executionNumber;
        *length = 2;
    } else if (message->cmd == argumentCommand && message->len >= 3) {
        take(message->data, message->len, answer, length);
    } else if (message->cmd == executeCommand && message->len >= 3) {
        execute(message->data, answer, length);
    } else if (message->cmd == readCommand && message->len >= 6) {
        giveOutput(message->data, answer, length);
    } else if (message->cmd != endCommand) {
        fail(answer, length, 0xC1);
    }
}

static void systemGuid(lmc_data_t* mc, msg_t* message, unsigned char* answer, unsigned int* length,
                       void* data) {
    (void)mc;
    (void)message;
    (void)data;
    answer[0] = 0;
    for (unsigned int i = 0; i < 16; ++i) answer[1 + i] = (unsigned char)(15 - i);
    *length = 17;
}

__attribute__((visibility("default"))) int ipmi_sim_module_print_version(sys_data_t* system,
                                                                         char* options) {
    (void)system;
    (void)options;
    puts("enclosure 1.0");
    return 0;
}

__attribute__((visibility("default"))) int ipmi_sim_module_init(sys_data_t* system,
                                                                const char* options) {
    (void)system;
    snprintf(folder, sizeof folder, "%s", options);
    const int status = ipmi_emu_register_iana_handler(manufacturer, enclosure, NULL);
    if (status != 0) return status;
    return ipmi_emu_register_cmd_handler(applicationFunction, getSystemGuid, systemGuid, NULL);
}
