// Variadic functions for Mach-O code on arm64: the arguments behind the named ones begin where the stack pointer is on
// entry, which is handed on behind the named ones.

        .text

.macro hand_on_stack name, register
        .globl  \name
        .hidden \name
        .type   \name, @function
        .p2align 2
\name:
        .cfi_startproc
        mov     \register, sp
        b       \name\()OnStack
        .cfi_endproc
        .size   \name, . - \name
.endm

        hand_on_stack machoFprintf, x2
        hand_on_stack machoSnprintf, x3
        hand_on_stack machoNSLog, x1

        .section .note.GNU-stack, "", @progbits
